#include "tests/output/DeviceTree.h"

namespace larkspan::test {

namespace fs = std::filesystem;

DeviceTree::DeviceTree()
{
    fs::create_directories(devices());
    fs::create_directories(m_folder / "dev/block");
    fs::create_directories(m_folder / "class/block");
    fs::create_directories(byLabel());
}

fs::path DeviceTree::addDisk(const std::string &place, const std::string &number, bool removable) const
{
    addDevice(place, number);
    write(place + "/removable", removable ? "1\n" : "0\n");
    return devices() / place;
}

void DeviceTree::addPartition(const std::string &place, const std::string &number) const
{
    addDevice(place, number);
    write(place + "/partition", "1\n");
}

void DeviceTree::setSubsystem(const std::string &place, const std::string &name) const
{
    fs::create_directories(devices() / place);
    fs::create_symlink("../bus/" + name, devices() / place / "subsystem");
}

void DeviceTree::setType(const std::string &diskPlace, const std::string &type) const
{
    const fs::path device = (devices() / diskPlace).parent_path().parent_path();
    m_folder.write(fs::relative(device, m_folder.path()) / "type", type + "\n");
    fs::create_symlink("../..", devices() / diskPlace / "device");
}

void DeviceTree::addSlave(const std::string &place, const std::string &part) const
{
    const fs::path slaves = devices() / place / "slaves";
    fs::create_directories(slaves);
    fs::create_symlink(fs::relative(devices() / part, slaves), slaves / fs::path(part).filename());
}

void DeviceTree::write(const std::string &place, const std::string &content) const
{
    m_folder.write("devices/" + place, content);
}

void DeviceTree::setLabel(const std::string &linkName, const std::string &device) const
{
    fs::create_symlink("../../" + device, byLabel() / linkName);
}

void DeviceTree::addCardReader(const std::string &number) const
{
    const std::string host = "pci0000:00/0000:00:14.0/usb1/1-" + number;
    const std::string disk = host + "/1-2:1.0/host4/target4:0:0/4:0:0:0/block/sd" + number;
    setSubsystem(host, "usb");
    addDisk(disk, number + "000", true);
    addPartition(disk + "/sd" + number + "p1", number);
}

void DeviceTree::addDevice(const std::string &place, const std::string &number) const
{
    const fs::path device = devices() / place;
    fs::create_directories(device);
    fs::create_symlink(fs::relative(device, m_folder / "dev/block"), m_folder / "dev/block" / number);
    fs::create_symlink(fs::relative(device, m_folder / "class/block"), m_folder / "class/block" / device.filename());
}

} // namespace larkspan::test
