// copy_verify SOURCE DESTINATION --level sizeOnly|checksum: copies a file, or all files of a folder, as an import does,
// and leaves the copies in the destination, with their proof if bytes were compared. Measures beside it, in a folder
// that goes again, an import that leaves no proof, and the programs that people use for it. Each starts with the source
// out of the page cache and with the copies of the one before removed, on the medium too.
//
// proofSeconds is what the proof itself costs: one small file, and a sync of it and of each folder above, some
// milliseconds however much was copied. Whole imports, with it or without, differ from one to the next by far more.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "bench/Memory.h"
#include "core/files/FileDescriptor.h"
#include "output/MediaImporter.h"
#include "output/ProofFile.h"
#include "output/Sha256.h"

using namespace larkspan;
using namespace larkspan::bench;
namespace fs = std::filesystem;

namespace {

constexpr int turns = 4; // an even number, as every other one goes backwards

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Tells apart the phases of a copy: up to the sync of a file it is copied, from there to its name it is read back.
class TimedOperations : public FileOperations
{
public:
    double copying = 0.0; // seconds, all of them
    double syncing = 0.0;
    double readingBack = 0.0;

    int sync(int fd) const override
    {
        struct stat status
        {};
        if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
            return FileOperations::sync(fd); // a folder's
        }
        const auto start = std::chrono::steady_clock::now();
        auto &self = const_cast<TimedOperations &>(*this);
        self.copying += std::exchange(self.m_copied, true) ? 0.0 : secondsSince(m_mark);
        const int result = FileOperations::sync(fd);
        self.syncing += secondsSince(start);
        self.m_mark = std::chrono::steady_clock::now();
        return result;
    }
    int renameWithoutClobbering(int folder, const char *from, const char *to) const override
    {
        auto &self = const_cast<TimedOperations &>(*this);
        self.readingBack += secondsSince(m_mark);
        const int result = FileOperations::renameWithoutClobbering(folder, from, to);
        self.m_mark = std::chrono::steady_clock::now();
        self.m_copied = false;
        return result;
    }

private:
    std::chrono::steady_clock::time_point m_mark = std::chrono::steady_clock::now();
    bool m_copied = false;
};

// Tells when an import begins with its proof, which is the last that it does.
class ProofTimed : public FileOperations
{
public:
    int open(int folder, const char *path, int flags, mode_t mode) const override
    {
        if (std::string_view(path) == proofFileName) {
            m_begun = std::chrono::steady_clock::now();
        }
        return FileOperations::open(folder, path, flags, mode);
    }
    // 0 for an import that has no proof.
    double secondsSinceBegun() const { return m_begun ? secondsSince(*m_begun) : 0.0; }

private:
    mutable std::optional<std::chrono::steady_clock::time_point> m_begun;
};

// An import whose proof can't be looked at, and so isn't written.
class WithoutProof : public FileOperations
{
public:
    int open(int folder, const char *path, int flags, mode_t mode) const override
    {
        if (std::string_view(path) == proofFileName) {
            errno = EACCES;
            return -1;
        }
        return FileOperations::open(folder, path, flags, mode);
    }
};

std::vector<FileUrl> filesOf(const fs::path &source)
{
    std::vector<FileUrl> files;
    if (fs::is_regular_file(source)) {
        files.emplace_back(source);
        return files;
    }
    for (const auto &entry : fs::recursive_directory_iterator(source)) {
        if (entry.is_regular_file()) {
            files.emplace_back(entry.path());
        }
    }
    return files;
}

// Out of the page cache, so that the next to read a file reads the disk.
void forget(const std::vector<FileUrl> &files)
{
    for (const FileUrl &file : files) {
        const FileDescriptor fd(::open(file.path().c_str(), O_RDONLY | O_CLOEXEC));
        ::fsync(fd.get());
        ::posix_fadvise(fd.get(), 0, 0, POSIX_FADV_DONTNEED);
    }
}

// Until what was written and removed is on the medium.
void waitForDisk(const fs::path &folder)
{
    const FileDescriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ::syncfs(fd.get());
}

std::string quoted(const fs::path &path)
{
    std::string text = "'";
    for (const char c : path.native()) {
        if (c == '\'') {
            text.append("'\\'");
        }
        text.push_back(c);
    }
    text.push_back('\'');
    return text;
}

// Seconds that a shell command takes; ends the program if it fails.
double timed(const std::string &command)
{
    const auto start = std::chrono::steady_clock::now();
    if (std::system((command + " >/dev/null").c_str()) != 0) {
        std::cerr << "failed: " << command << '\n';
        std::exit(1);
    }
    return secondsSince(start);
}

double hashBytesPerSecond()
{
    const std::vector<std::byte> chunk(4 * 1024 * 1024);
    constexpr int count = 128;
    Sha256 hash;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i) {
        hash.update(chunk);
    }
    static_cast<void>(hash.finish());
    return static_cast<double>(chunk.size()) * count / secondsSince(start);
}

struct Import
{
    double seconds = 0.0;
    std::vector<FileUrl> copies;
};

// Ends the program if it fails.
Import import(const std::vector<FileUrl> &urls, const fs::path &folder, VerifyLevel level,
              const FileOperations &operations)
{
    forget(urls);
    const auto start = std::chrono::steady_clock::now();
    const auto answer = MediaImporter::copyFiles(urls, FileUrl(folder), {level, [](int, int) {}}, operations);
    Import done{.seconds = secondsSince(start)};
    if (!answer) {
        std::cerr << answer.error().description().toStdString() << '\n';
        std::exit(1);
    }
    for (const CopyResult &result : *answer) {
        done.copies.push_back(result.destinationURL);
    }
    return done;
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string level = arguments.size() == 4 && arguments[2] == "--level" ? arguments[3] : "";
    if (level != "sizeOnly" && level != "checksum") {
        std::cerr << "usage: copy_verify SOURCE DESTINATION --level sizeOnly|checksum\n";
        return 2;
    }
    const auto urls = filesOf(arguments[0]);
    const VerifyLevel verify = verifyLevelFromRawValue(QString::fromStdString(level));
    const fs::path target = fs::path(arguments[1]) / ("copy_verify-" + std::to_string(::getpid()));
    double bytes = 0.0;
    std::string sources;
    for (const FileUrl &url : urls) {
        bytes += static_cast<double>(fs::file_size(url.path()));
        sources += " " + quoted(url.path());
    }
    const std::string copies = quoted(target) + "/*";

    const double idle = residentMegabytes();
    const TimedOperations operations;
    static_cast<void>(import(urls, arguments[1], verify, operations));
    double seconds = std::numeric_limits<double>::infinity();
    const double peak = peakMegabytes();
    std::vector<FileUrl> made;
    const auto clear = [&] {
        for (const FileUrl &copy : made) {
            fs::remove(copy.path());
        }
        fs::remove(target / proofFileName);
        waitForDisk(arguments[1]);
        forget(urls);
    };
    const auto secondsOf = [&](const FileOperations &calls) {
        clear();
        const Import done = import(urls, target, verify, calls);
        made = done.copies;
        return done.seconds;
    };
    // The fastest of each, in turns, there and back, after one that doesn't count: so all find the disk alike.
    double unprovedSeconds = std::numeric_limits<double>::infinity();
    double proofSeconds = std::numeric_limits<double>::infinity();
    const auto withProof = [&] {
        const ProofTimed calls;
        seconds = std::min(seconds, secondsOf(calls));
        proofSeconds = std::min(proofSeconds, calls.secondsSinceBegun());
    };
    const auto withoutProof = [&] { unprovedSeconds = std::min(unprovedSeconds, secondsOf(WithoutProof())); };
    secondsOf(FileOperations());
    for (int turn = 0; turn < turns; ++turn) {
        turn % 2 == 0 ? withoutProof() : withProof();
        turn % 2 == 0 ? withProof() : withoutProof();
    }
    const std::string copyAndSync = "cp --sparse=never" + sources + " " + quoted(target) + " && sync " + copies;

    // Copy and sync alone, then one reading of what the disk holds.
    clear();
    double plainSeconds = timed(copyAndSync);
    forget(made);
    plainSeconds += timed("cat " + copies);
    // The same, and both sides hashed.
    clear();
    const double referenceSeconds = timed(copyAndSync + " && sha256sum" + sources + " " + copies);
    double rsyncSeconds = std::numeric_limits<double>::infinity();
    for (int turn = 0; turn < turns; ++turn) {
        clear();
        rsyncSeconds =
            std::min(rsyncSeconds, timed("rsync -a" + sources + " " + quoted(target) +
                                         " && rsync -a --checksum --dry-run" + sources + " " + quoted(target)));
    }
    fs::remove_all(target);

    std::cout.precision(3);
    std::cout << "{\"level\": \"" << level << "\", \"files\": " << urls.size() << ", \"bytes\": " << std::fixed << bytes
              << ", \"seconds\": " << seconds << ", \"referenceSeconds\": " << referenceSeconds
              << ", \"ratio\": " << referenceSeconds / seconds << ", \"plainSeconds\": " << plainSeconds
              << ", \"timesPlain\": " << seconds / plainSeconds << ", \"rsyncSeconds\": " << rsyncSeconds
              << ", \"rsyncRatio\": " << rsyncSeconds / seconds << ", \"proofSeconds\": " << proofSeconds
              << ", \"withoutProof\": {\"seconds\": " << unprovedSeconds
              << ", \"ratio\": " << referenceSeconds / unprovedSeconds
              << ", \"rsyncRatio\": " << rsyncSeconds / unprovedSeconds << "}, \"peakMegabytes\": " << peak
              << ", \"megabytesAboveIdle\": " << peak - idle
              << ", \"bytesPerSecond\": {\"copy\": " << bytes / operations.copying
              << ", \"sync\": " << bytes / operations.syncing << ", \"readBack\": " << bytes / operations.readingBack
              << ", \"hash\": " << hashBytesPerSecond() << "}}\n";
}
