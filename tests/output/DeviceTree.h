#pragma once

#include <string>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

// A kernel's device tree as it stands on a real machine, rebuilt in a temporary folder from what such machines show.
class DeviceTree
{
public:
    DeviceTree();

    const std::filesystem::path &path() const { return m_folder.path(); }

    // Devices by their place below "devices"; each gets its number ("8:17") and its link among the block devices.
    std::filesystem::path addDisk(const std::string &place, const std::string &number, bool removable) const;
    void addPartition(const std::string &place, const std::string &number) const;
    // The bus or class that a device belongs to.
    void setSubsystem(const std::string &place, const std::string &name) const;
    // The device below which a disk's own stands, with what it says of its type.
    void setType(const std::string &diskPlace, const std::string &type) const;
    // A device made of another one.
    void addSlave(const std::string &place, const std::string &part) const;
    void write(const std::string &place, const std::string &content) const;
    // Names a device's file system in byLabel().
    void setLabel(const std::string &linkName, const std::string &device) const;
    std::filesystem::path byLabel() const { return m_folder / "by-label"; }

    // A card's partition in a USB reader with that number, whatever device the number belongs to in truth.
    void addCardReader(const std::string &number) const;

private:
    std::filesystem::path devices() const { return m_folder / "devices"; }
    void addDevice(const std::string &place, const std::string &number) const;

    TempFolder m_folder;
};

} // namespace larkspan::test
