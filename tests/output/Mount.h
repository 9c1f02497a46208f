#pragma once

#include <filesystem>
#include <string>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

// A file system of a test's own, mounted while the object lives. Only root may mount, and not everywhere: a test asks
// first, and is skipped with the reason where there is none.
class Mount
{
public:
    enum class Kind {
        memory,
        ext4,
        btrfs,
        exfat // through FUSE
    };

    // All but the one in memory lie on a fresh image of that many bytes, attached to a loop device.
    Mount(Kind kind, std::size_t bytes);
    ~Mount();
    Mount(const Mount &) = delete;
    Mount &operator=(const Mount &) = delete;

    // Empty when it is mounted.
    const std::string &whyNot() const { return m_whyNot; }
    const std::filesystem::path &path() const { return m_path; }
    const std::filesystem::path &image() const { return m_image; }

    void makeReadOnly() const;
    // Takes the mount out of the tree, whatever still uses it.
    void detach() const;

private:
    void run(const std::string &command);

    TempFolder m_folder;
    std::filesystem::path m_path = m_folder / "mount";
    std::filesystem::path m_image = m_folder / "image";
    std::string m_loop; // the device, if one was attached
    std::string m_whyNot;
};

} // namespace larkspan::test
