#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/files/FileDescriptor.h"

namespace larkspan {

// One line of the kernel's mount table.
struct MountEntry
{
    int id = 0;         // of the mount; the kernel gives it to another one once this is gone
    std::string device; // its number, "8:17"; "0:…" for a file system without a device of its own
    std::filesystem::path mountPoint;
    std::string type;   // of the file system: "exfat", "nfs4"
    std::string source; // "/dev/sdb1", "server:/export", or whatever the file system calls it

    friend bool operator==(const MountEntry &, const MountEntry &) = default;
};

// The entries of a mount table in the kernel's form, in its order. Lines that have another form are left out.
std::vector<MountEntry> parseMountTable(std::string_view text);

// The volumes that came between two readings of the table, in the later one's order. A further mount of a device that
// is mounted already, a bind mount for one, is no new volume, and neither is one that another mount covers.
std::vector<MountEntry> newVolumes(std::span<const MountEntry> before, std::span<const MountEntry> after);

// The mount that is reached by a path: the last of those on that mount point. Null without one.
const MountEntry *mountAt(std::span<const MountEntry> table, const std::filesystem::path &mountPoint);

// The kernel's mount table, kept open so that a change shows as an exceptional condition (POLLPRI) on its descriptor.
// One thread.
class MountTable
{
public:
    explicit MountTable(const std::filesystem::path &file);

    // Negative if it can't be opened.
    [[nodiscard]] int descriptor() const { return m_file.get(); }
    // The table as it is now, whole even if it changes meanwhile, which takes the condition off the descriptor. Empty
    // if it can't be read.
    [[nodiscard]] std::vector<MountEntry> read() const;

private:
    [[nodiscard]] std::string text() const;
    [[nodiscard]] bool hasChanged() const;

    FileDescriptor m_file;
};

} // namespace larkspan
