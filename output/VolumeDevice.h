#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "output/MountTable.h"

namespace larkspan {

// The block device that a volume lies on, as the kernel's device tree tells of it. A plain value; any thread.
class VolumeDevice
{
public:
    // deviceTree: "/sys". None for a volume without a block device of its own (network shares, memory, overlays, most
    // of FUSE), or when the tree doesn't know it.
    static std::optional<VolumeDevice> of(const MountEntry &mount, const std::filesystem::path &deviceTree);

    // The kernel's name for it: "sdb1", "dm-0".
    [[nodiscard]] std::string name() const { return m_folder.filename(); }

    // Returns whether it can be taken out: the medium out of its drive (the disk says so, or is an SD card), or the
    // disk out of the machine (USB, FireWire, a hot-plugged PCI slot). A device made of others can be if all of those
    // can. False when nothing says so: an internal disk, a file in a loop device, a disk over a network.
    [[nodiscard]] bool isRemovable() const;

    // The label of its file system; none without one. byLabel: the folder of links that are named after the labels.
    [[nodiscard]] std::optional<std::string> label(const std::filesystem::path &byLabel) const;

private:
    VolumeDevice(std::filesystem::path folder, std::filesystem::path deviceTree)
        : m_folder(std::move(folder))
        , m_deviceTree(std::move(deviceTree))
    {}

    std::filesystem::path m_folder;     // its own in the tree, free of links
    std::filesystem::path m_deviceTree; // likewise
};

} // namespace larkspan
