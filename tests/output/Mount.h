#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/TempFolder.h"

// Leaves the test, with the reason, where the machine lets nothing be mounted.
#define REQUIRE_MOUNTED(mount)                                                                                         \
    if (!(mount).whyNot().empty()) {                                                                                   \
        GTEST_SKIP() << (mount).whyNot();                                                                              \
    }

namespace larkspan::test {

inline constexpr std::size_t megabyte = 1024 * 1024;

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

    // at: where to mount it; a folder of its own if not said. All but the one in memory lie on a fresh image of that
    // many bytes, attached to a loop device.
    Mount(Kind kind, std::size_t bytes, const std::filesystem::path &at = {});
    ~Mount();
    Mount(const Mount &) = delete;
    Mount &operator=(const Mount &) = delete;

    // Lets no further one be mounted, for that reason.
    static void forbid(const std::string &why) { s_forbidden = why; }

    // Empty when it is mounted.
    const std::string &whyNot() const { return m_whyNot; }
    const std::filesystem::path &path() const { return m_path; }
    const std::filesystem::path &image() const { return m_image; }

    // The number of the device that is mounted, "7:3".
    std::string deviceNumber() const;
    void makeReadOnly() const;
    // As a person does it who is done with a card: refused while a file of it is open. False if it was.
    [[nodiscard]] bool unmount() const;
    // Puts the card back.
    void mountAgain();
    // Shows the same file system, or a folder of it, at another path too.
    void bind(const std::filesystem::path &folder, const std::filesystem::path &at);
    // Takes the mount out of the tree, whatever still uses it.
    void detach() const;

private:
    void run(const std::string &command);

    TempFolder m_folder;
    std::filesystem::path m_path;
    std::filesystem::path m_image = m_folder / "image";
    std::string m_loop; // the device, if one was attached
    std::string m_mountCommand;
    std::string m_whyNot = s_forbidden;
    static inline std::string s_forbidden;
};

} // namespace larkspan::test
