#include "core/files/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <ranges>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <QtCore/QFile>
#include <QtCore/QUuid>

#include "core/files/FileDescriptor.h"
#include "core/files/SystemError.h"

namespace larkspan {

namespace {

tl::unexpected<std::error_code> failed(std::error_code error)
{
    return tl::make_unexpected(error);
}

// Writes, syncs and closes; the first error of the three.
std::error_code fill(FileDescriptor file, std::string_view content)
{
    std::error_code error;
    while (!error && !content.empty()) {
        const ssize_t written = write(file.get(), content.data(), content.size());
        if (written >= 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            error = lastError();
        }
    }
    if (!error && fsync(file.get()) != 0) {
        error = lastError();
    }
    if (close(file.release()) != 0 && !error) {
        error = lastError();
    }
    return error;
}

} // namespace

tl::expected<void, std::error_code> writeFileAtomically(const std::filesystem::path &path, std::string_view content)
{
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    // A short name of its own, so that a long file name doesn't grow past what the file system takes.
    const std::string name = ".larkspan-" + QUuid::createUuid().toString(QUuid::Id128).toStdString() + ".tmp";
    const std::filesystem::path temporary = folder / name;

    FileDescriptor file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file) {
        return failed(lastError());
    }
    std::error_code error = fill(std::move(file), content);
    if (!error && std::rename(temporary.c_str(), path.c_str()) != 0) {
        error = lastError();
    }
    if (error) {
        unlink(temporary.c_str());
        return failed(error);
    }
    syncFolder(folder); // should that fail, the file is complete all the same
    return {};
}

void syncFolder(const std::filesystem::path &folder)
{
    const FileDescriptor directory(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory) {
        fsync(directory.get());
    }
}

tl::expected<void, std::error_code> makeLastingFolders(const std::filesystem::path &folder)
{
    std::error_code error;
    std::vector<std::filesystem::path> missing; // the deepest first
    for (auto next = folder; !next.empty() && !std::filesystem::is_directory(next, error); next = next.parent_path()) {
        missing.push_back(next);
    }
    for (const std::filesystem::path &next : missing | std::views::reverse) {
        error.clear();
        std::filesystem::create_directory(next, error);
        if (error) {
            return failed(error);
        }
        syncFolder(next.parent_path());
    }
    return {};
}

QByteArray contentOf(const std::filesystem::path &file, std::uintmax_t most)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error) || std::filesystem::file_size(file, error) > most) {
        return {};
    }
    QFile stream(QFile::decodeName(file.c_str()));
    return stream.open(QIODevice::ReadOnly) ? stream.readAll() : QByteArray();
}

} // namespace larkspan
