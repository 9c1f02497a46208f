#include "tests/output/Mount.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace larkspan::test {

namespace {

// Returns whether a shell command worked, and the last line that it printed.
std::pair<bool, std::string> resultOf(const std::string &command)
{
    FILE *const pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        return {false, "no shell"};
    }
    std::array<char, 512> line{};
    std::string last;
    while (std::fgets(line.data(), line.size(), pipe) != nullptr) {
        last = line.data();
    }
    return {::pclose(pipe) == 0, last.substr(0, last.find('\n'))};
}

} // namespace

Mount::Mount(Kind kind, std::size_t bytes, const std::filesystem::path &at)
    : m_path(at.empty() ? m_folder / "mount" : at)
{
    std::filesystem::create_directories(m_path);
    const std::string mount = " '" + m_path.string() + "'";
    if (kind == Kind::memory) {
        m_mountCommand = "mount -t tmpfs -o mode=777,size=" + std::to_string(bytes) + " none" + mount;
        run(m_mountCommand);
        return;
    }
    m_folder.write("image");
    std::filesystem::resize_file(m_image, bytes);
    const std::string image = " " + m_image.string();
    run((kind == Kind::ext4 ? "mkfs.ext4 -q -F" : kind == Kind::btrfs ? "mkfs.btrfs -q" : "mkfs.exfat") + image);
    if (m_whyNot.empty()) {
        const auto [attached, device] = resultOf("losetup --find --show" + image);
        m_loop = attached ? device : "";
        m_whyNot = attached ? "" : device;
    }
    m_mountCommand = (kind == Kind::exfat ? "mount.exfat-fuse " : "mount ") + m_loop + mount;
    run(m_mountCommand);
}

Mount::~Mount()
{
    detach();
    if (!m_loop.empty()) {
        resultOf("losetup --detach " + m_loop);
    }
}

void Mount::run(const std::string &command)
{
    if (m_whyNot.empty()) {
        const auto [worked, said] = resultOf(command);
        m_whyNot = worked ? "" : command + ": " + said;
    }
}

std::string Mount::deviceNumber() const
{
    struct stat info
    {};
    if (::stat(m_path.c_str(), &info) != 0) {
        throw std::runtime_error("could not look at " + m_path.string());
    }
    return std::to_string(major(info.st_dev)) + ":" + std::to_string(minor(info.st_dev));
}

bool Mount::unmount() const
{
    return ::umount2(m_path.c_str(), 0) == 0;
}

void Mount::mountAgain()
{
    run(m_mountCommand);
}

void Mount::bind(const std::filesystem::path &folder, const std::filesystem::path &at)
{
    run("mount --bind '" + folder.string() + "' '" + at.string() + "'");
}

void Mount::makeReadOnly() const
{
    if (::mount(nullptr, m_path.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
        throw std::runtime_error("could not make the mount read-only");
    }
}

void Mount::detach() const
{
    ::umount2(m_path.c_str(), MNT_DETACH);
}

} // namespace larkspan::test
