#include "output/DestinationFolder.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <ranges>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <QtCore/QRandomGenerator>

#include "core/files/SystemError.h"
#include "output/FileNames.h"
#include "output/SourceFile.h"

namespace larkspan {

namespace {

constexpr std::string_view temporaryPrefix = ".larkspan-";
constexpr std::string_view temporarySuffix = ".partial";
constexpr int temporaryDigits = 16;

std::string newTemporaryName()
{
    const QString digits = QString::number(QRandomGenerator::system()->generate64(), 16);
    return std::string(temporaryPrefix) + digits.rightJustified(temporaryDigits, QLatin1Char('0')).toStdString() +
           std::string(temporarySuffix);
}

bool isTemporaryName(std::string_view name)
{
    if (name.size() != temporaryPrefix.size() + temporaryDigits + temporarySuffix.size() ||
        !name.starts_with(temporaryPrefix) || !name.ends_with(temporarySuffix)) {
        return false;
    }
    return std::ranges::all_of(name.substr(temporaryPrefix.size(), temporaryDigits),
                               [](unsigned char c) { return std::isdigit(c) != 0 || (c >= 'a' && c <= 'f'); });
}

// Some file systems can't sync a folder and say so; they keep their names in other ways.
std::error_code syncFolder(int fd, const FileOperations &files)
{
    if (files.sync(fd) != 0 && errno != EINVAL && errno != ENOTSUP && errno != ENOSYS) {
        return lastError();
    }
    return {};
}

FileDescriptor openFolder(const std::filesystem::path &path, const FileOperations &files)
{
    return FileDescriptor(files.open(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
}

// Makes the folders that are missing, each lastingly so before anything is put into it.
std::error_code makeFolders(std::filesystem::path path, const FileOperations &files)
{
    std::vector<std::filesystem::path> missing;
    struct stat status
    {};
    while (!path.empty() && ::stat(path.c_str(), &status) != 0) {
        if (path.has_filename()) {
            missing.push_back(path);
        }
        path = path.parent_path();
    }
    for (const std::filesystem::path &folder : std::views::reverse(missing)) {
        if (files.makeFolder(folder.c_str(), 0777) != 0) {
            if (errno == EEXIST) {
                continue;
            }
            return lastError();
        }
        const FileDescriptor parent = openFolder(folder.has_parent_path() ? folder.parent_path() : ".", files);
        if (const std::error_code error = parent ? syncFolder(parent.get(), files) : lastError()) {
            return error;
        }
    }
    return {};
}

// Removes temporary files from one folder. Returns the folders that it contains, without links to any.
std::vector<std::filesystem::path> clearInterruptedRun(const std::filesystem::path &folder, const FileOperations &files)
{
    std::vector<std::filesystem::path> folders;
    const FileDescriptor fd = openFolder(folder, files);
    std::error_code ignored; // what can't be listed is cleared another time
    const std::filesystem::directory_iterator end;
    for (std::filesystem::directory_iterator entry(folder, ignored); entry != end; entry.increment(ignored)) {
        if (entry->symlink_status(ignored).type() == std::filesystem::file_type::directory) {
            folders.push_back(entry->path());
            continue;
        }
        const std::string name = entry->path().filename().native();
        if (!isTemporaryName(name)) {
            continue;
        }
        const FileDescriptor file(::openat(fd.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        // A process that still writes it holds the lock. On a file system without locks it is kept, to be safe.
        if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            files.remove(fd.get(), name.c_str());
        }
    }
    return folders;
}

bool isUnsupported(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP || error == EPERM;
}

} // namespace

TemporaryFile::~TemporaryFile()
{
    if (m_fd && !m_name.empty()) {
        m_files->remove(m_folder, m_name.c_str());
    }
}

tl::expected<DestinationFolder, std::error_code> DestinationFolder::open(const std::filesystem::path &path,
                                                                         const FileOperations &files)
{
    if (const std::error_code error = makeFolders(path, files)) {
        return tl::unexpected(error);
    }
    FileDescriptor fd = openFolder(path, files);
    if (!fd) {
        return tl::unexpected(lastError());
    }
    DestinationFolder folder(path, std::move(fd), files);
    if (const long longest = ::fpathconf(folder.fd(), _PC_NAME_MAX); longest > 0) {
        folder.m_longestName = static_cast<std::size_t>(longest);
    }
    return folder;
}

tl::expected<TemporaryFile, std::error_code> DestinationFolder::makeTemporary() const
{
    constexpr int attempts = 16;
    for (int i = 0; i < attempts; ++i) {
        const std::string name = newTemporaryName();
        FileDescriptor file(
            m_files->open(fd(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!file) {
            if (errno == EEXIST) {
                continue;
            }
            return tl::unexpected(lastError());
        }
        // Between making and locking, another run may have taken it for stale and removed it.
        struct stat status
        {};
        const bool locked = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
        if (locked && ::fstat(file.get(), &status) == 0 && status.st_nlink > 0) {
            return TemporaryFile(fd(), name, std::move(file), *m_files);
        }
    }
    return tl::unexpected(std::make_error_code(std::errc::file_exists));
}

std::error_code DestinationFolder::claim(const std::string &temporary, const std::string &name) const
{
    const char *const from = temporary.c_str();
    const char *const to = name.c_str();
    if (m_files->renameWithoutClobbering(fd(), from, to) == 0) {
        return {};
    }
    if (!isUnsupported(errno)) {
        return lastError();
    }
    // A second name is refused where the first is taken, just as well.
    if (m_files->link(fd(), from, to) == 0) {
        m_files->remove(fd(), from);
        return {};
    }
    if (!isUnsupported(errno)) {
        return lastError();
    }
    // Neither: hold the name with an empty file, and put the copy in its place.
    const FileDescriptor placeholder(m_files->open(fd(), to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!placeholder) {
        return lastError();
    }
    if (m_files->rename(fd(), from, to) != 0) {
        const std::error_code error = lastError();
        m_files->remove(fd(), to);
        return error;
    }
    return {};
}

tl::expected<std::filesystem::path, std::error_code> DestinationFolder::place(TemporaryFile &file,
                                                                              const std::string &wanted)
{
    int &number = m_nextToTry.try_emplace(wanted, 1).first->second;
    for (;; ++number) {
        const std::string name = numberedName(wanted, number, m_longestName);
        const std::error_code error = claim(file.m_name, name);
        if (!error) {
            file.m_name.clear();
            ++number;
            return m_path / name;
        }
        if (error != std::errc::file_exists) {
            return tl::unexpected(error);
        }
    }
}

std::error_code DestinationFolder::replace(TemporaryFile &file, const char *name) const
{
    if (m_files->rename(fd(), file.m_name.c_str(), name) != 0) {
        return lastError();
    }
    file.m_name.clear();
    return {};
}

// A folder above may be as new as this one, made by another program that synced nothing: a power cut loses its name,
// and all beneath it. So all are synced up to the root of the file system, or to one that may not be opened.
std::error_code DestinationFolder::sync() const
{
    struct stat here
    {};
    struct stat there
    {};
    FileDescriptor above;
    int folder = fd();
    for (;;) {
        if (const std::error_code error = syncFolder(folder, *m_files)) {
            return error;
        }
        FileDescriptor next(m_files->open(folder, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
        if (!next && (errno == EACCES || errno == EPERM)) {
            return {};
        }
        if (!next || ::fstat(folder, &here) != 0 || ::fstat(next.get(), &there) != 0) {
            return lastError();
        }
        if (there.st_dev != here.st_dev || there.st_ino == here.st_ino) {
            return {};
        }
        above = std::move(next);
        folder = above.get();
    }
}

void clearInterruptedRuns(const std::filesystem::path &folder, const FileOperations &files)
{
    for (const std::filesystem::path &beneath : clearInterruptedRun(folder, files)) {
        clearInterruptedRun(beneath, files);
    }
}

} // namespace larkspan
