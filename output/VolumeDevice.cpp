#include "output/VolumeDevice.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <string_view>
#include <system_error>

namespace larkspan {

namespace {

namespace fs = std::filesystem;

constexpr int mostParts = 64; // that a device is made of; more is a ring

std::string firstLine(const fs::path &file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

// Returns the target of a link in the tree; empty for a link that leads nowhere.
fs::path followed(const fs::path &link)
{
    std::error_code error;
    fs::path target = fs::canonical(link, error);
    return error ? fs::path() : target;
}

bool isThere(const fs::path &path)
{
    std::error_code error;
    return fs::exists(path, error);
}

// A folder's entries; none if it can't be read.
std::vector<fs::path> entriesOf(const fs::path &folder)
{
    std::vector<fs::path> entries;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        entries.push_back(entry->path());
    }
    return entries;
}

// The bus or class that a device of the tree belongs to: "usb", "scsi", "block".
std::string subsystemOf(const fs::path &device)
{
    std::error_code error;
    return fs::read_symlink(device / "subsystem", error).filename();
}

// The device and those between it and the machine.
std::vector<fs::path> wayFrom(const fs::path &device, const fs::path &deviceTree)
{
    std::vector<fs::path> way;
    for (fs::path step = device; step != deviceTree && step.has_relative_path(); step = step.parent_path()) {
        way.push_back(step);
    }
    return way;
}

bool isPluggedIn(const fs::path &step)
{
    constexpr std::array<std::string_view, 4> outerBuses{"usb", "firewire", "memstick", "pcmcia"};
    return std::ranges::find(outerBuses, subsystemOf(step)) != outerBuses.end() ||
           firstLine(step / "removable") == "removable"; // of PCI behind an outer port
}

// Returns whether a disk is connected through anything that is plugged in from the outside.
bool comesFromOutside(const fs::path &disk, const fs::path &deviceTree)
{
    std::vector<fs::path> way = wayFrom(disk, deviceTree);
    if (const auto hub = std::ranges::find(way, "nvme-subsystem", subsystemOf); hub != way.end()) {
        // Such a disk hangs in the air, and the controllers that lead to it are links beside it.
        std::vector<fs::path> controllers = entriesOf(*hub);
        std::erase_if(controllers, [](const fs::path &entry) { return subsystemOf(entry) != "nvme"; });
        for (const fs::path &controller : controllers) {
            std::ranges::move(wayFrom(followed(controller), deviceTree), std::back_inserter(way));
        }
    }
    return std::ranges::any_of(way, isPluggedIn);
}

// Returns the disks that a device is made of in the end; none if there is no end to it.
std::vector<fs::path> disksOf(const fs::path &device)
{
    std::vector<fs::path> disks;
    std::vector<fs::path> open{device};
    for (int looked = 0; !open.empty(); ++looked) {
        if (looked == mostParts) {
            return {};
        }
        const fs::path part = std::move(open.back());
        open.pop_back();
        const fs::path disk = isThere(part / "partition") ? part.parent_path() : part;
        const std::vector<fs::path> slaves = entriesOf(disk / "slaves");
        if (slaves.empty()) {
            disks.push_back(disk);
        }
        std::ranges::transform(slaves, std::back_inserter(open), followed);
    }
    return disks;
}

// The folder of a device that the mount table names by its path only, since the file system spans several.
fs::path folderOfSource(const std::string &source, const fs::path &deviceTree)
{
    const fs::path devices = deviceTree / "class/block";
    const fs::path path(source);
    if (path.parent_path() == "/dev") {
        return followed(devices / path.filename());
    }
    if (path.parent_path() == "/dev/mapper") {
        for (const fs::path &device : entriesOf(devices)) {
            if (firstLine(device / "dm/name") == path.filename()) {
                return followed(device);
            }
        }
    }
    return {};
}

// Blanks and what else can't stand in a link's name are written as \x20.
std::string decodedLabel(std::string_view name)
{
    constexpr std::size_t escapeLength = 4;
    std::string label;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const std::string_view escape = name.substr(i, escapeLength);
        unsigned char byte = 0;
        const char *const end = escape.data() + escape.size();
        if (escape.size() == escapeLength && escape.starts_with("\\x") &&
            std::from_chars(escape.data() + 2, end, byte, 16).ptr == end) {
            label.push_back(static_cast<char>(byte));
            i += escapeLength - 1;
        } else {
            label.push_back(name[i]);
        }
    }
    return label;
}

} // namespace

std::optional<VolumeDevice> VolumeDevice::of(const MountEntry &mount, const fs::path &deviceTree)
{
    fs::path folder = followed(deviceTree / "dev/block" / mount.device);
    if (folder.empty() && mount.type == "btrfs") {
        folder = folderOfSource(mount.source, deviceTree);
    }
    if (folder.empty()) {
        return std::nullopt;
    }
    return VolumeDevice(std::move(folder), followed(deviceTree));
}

bool VolumeDevice::isRemovable() const
{
    const std::vector<fs::path> disks = disksOf(m_folder);
    return !disks.empty() && std::ranges::all_of(disks, [this](const fs::path &disk) {
        // An SD card in a reader of the machine's own doesn't count as removable with the kernel, but tells itself from
        // the soldered kind ("MMC").
        const std::string type = firstLine(disk / "device/type");
        return firstLine(disk / "removable") == "1" || type == "SD" || type == "SDcombo" ||
               comesFromOutside(disk, m_deviceTree);
    });
}

std::optional<std::string> VolumeDevice::label(const fs::path &byLabel) const
{
    for (const fs::path &link : entriesOf(byLabel)) {
        std::error_code error;
        if (fs::read_symlink(link, error).filename() == m_folder.filename()) {
            return decodedLabel(link.filename().native());
        }
    }
    return std::nullopt;
}

} // namespace larkspan
