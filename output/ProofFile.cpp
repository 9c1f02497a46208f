#include "output/ProofFile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <tl/expected.hpp>

#include "core/files/SystemError.h"
#include "output/DestinationFolder.h"
#include "output/SourceFile.h"

namespace larkspan {

namespace {

constexpr std::size_t digestLength = 64;       // hexadecimal digits
constexpr off_t longestProof = off_t{1} << 28; // bytes; some two million files, and nothing to hold in memory beyond

struct Escape
{
    char character;
    char letter; // after a backslash
};
constexpr Escape escapes[] = {{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}};

// Returns the name for a line. A lone dash would be the standard input.
std::string writtenName(const std::filesystem::path &file)
{
    return file == "-" ? "./-" : file.native();
}

std::string escaped(std::string_view name)
{
    std::string text;
    for (const char c : name) {
        const auto *const escape = std::ranges::find(escapes, c, &Escape::character);
        if (escape == std::end(escapes)) {
            text.push_back(c);
        } else {
            text.append({'\\', escape->letter});
        }
    }
    return text;
}

std::string unescaped(std::string_view text)
{
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto *const escape = text[i] == '\\' && i + 1 < text.size()
                                       ? std::ranges::find(escapes, text[i + 1], &Escape::letter)
                                       : std::end(escapes);
        name.push_back(escape == std::end(escapes) ? text[i] : escape->character);
        i += escape == std::end(escapes) ? 0 : 1;
    }
    return name;
}

// The claim of a line; none for a line of another form, which is nobody's.
std::optional<ProofEntry> entryOf(std::string_view line)
{
    line.remove_suffix(line.ends_with('\n') ? 1 : 0);
    const bool isEscaped = line.starts_with('\\');
    line.remove_prefix(isEscaped ? 1 : 0);
    if (line.size() <= digestLength + 2 || line[digestLength] != ' ' ||
        (line[digestLength + 1] != ' ' && line[digestLength + 1] != '*') ||
        !std::ranges::all_of(line.substr(0, digestLength), [](unsigned char c) { return std::isxdigit(c) != 0; })) {
        return std::nullopt;
    }
    const std::string_view name = line.substr(digestLength + 2);
    return ProofEntry{std::filesystem::path(isEscaped ? unescaped(name) : std::string(name)).lexically_normal(),
                      std::string(line.substr(0, digestLength))};
}

// The proof without the lines whose claim is taken back.
std::string withoutLines(const std::string &proof, const std::function<bool(const ProofEntry &)> &isTakenBack)
{
    std::string left;
    for (std::size_t start = 0; start < proof.size();) {
        const std::size_t end = std::min(proof.find('\n', start), proof.size() - 1) + 1;
        const std::string_view line = std::string_view(proof).substr(start, end - start);
        const auto entry = entryOf(line);
        left.append(entry && isTakenBack(*entry) ? std::string_view() : line);
        start = end;
    }
    return left;
}

tl::expected<std::string, std::error_code> contentOfProof(const DestinationFolder &folder, const FileOperations &files)
{
    const FileDescriptor file(
        files.open(folder.fd(), proofFileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
    if (!file) {
        return errno == ENOENT ? tl::expected<std::string, std::error_code>() : tl::unexpected(lastError());
    }
    struct stat status
    {};
    if (::fstat(file.get(), &status) != 0) {
        return tl::unexpected(lastError());
    }
    if (!S_ISREG(status.st_mode) || status.st_size > longestProof) {
        return tl::unexpected(std::make_error_code(std::errc::file_exists));
    }
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    const auto count = readFully(file.get(), std::as_writable_bytes(std::span(content)), 0, files);
    if (!count) {
        return tl::unexpected(count.error());
    }
    content.resize(*count);
    if (content.find('\0') != std::string::npos) {
        return tl::unexpected(std::make_error_code(std::errc::file_exists)); // no text
    }
    return content;
}

std::error_code writeAll(int fd, std::string_view content, const FileOperations &files)
{
    off_t offset = 0;
    while (!content.empty()) {
        const ssize_t count = files.write(fd, content.data(), content.size(), offset);
        if (count > 0) {
            content.remove_prefix(static_cast<std::size_t>(count));
            offset += count;
        } else if (count == 0 || errno != EINTR) {
            return count == 0 ? std::make_error_code(std::errc::io_error) : lastError();
        }
    }
    return {};
}

std::error_code replaceProof(DestinationFolder &folder, std::string_view content, const FileOperations &files)
{
    // As a copy's temporary file, so that the next run clears up after one that was killed.
    auto temporary = folder.makeTemporary();
    if (!temporary) {
        return temporary.error();
    }
    if (const std::error_code error = writeAll(temporary->fd(), content, files)) {
        return error;
    }
    // Readable for whoever may look into the folder.
    struct stat status
    {};
    if (::fstat(folder.fd(), &status) == 0) {
        files.chmod(temporary->fd(), status.st_mode & 0666);
    }
    if (files.sync(temporary->fd()) != 0) {
        return lastError();
    }
    if (const std::error_code error = folder.replace(*temporary, proofFileName)) {
        return error;
    }
    return folder.sync();
}

std::error_code changeProof(const std::filesystem::path &path,
                            const std::function<std::string(const std::string &proof)> &changed,
                            const FileOperations &files)
{
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    auto folder = DestinationFolder::open(path, files);
    if (!folder) {
        return folder.error();
    }
    const auto before = contentOfProof(*folder, files);
    if (!before) {
        return before.error();
    }
    const std::string after = changed(*before);
    if (after == *before) {
        return {};
    }
    if (after.empty()) { // sha256sum takes a file without lines for a broken one
        return files.remove(folder->fd(), proofFileName) != 0 ? lastError() : folder->sync();
    }
    return replaceProof(*folder, after, files);
}

} // namespace

std::string proofLine(const ProofEntry &entry)
{
    const std::string name = writtenName(entry.file);
    const std::string text = escaped(name);
    return (text == name ? "" : "\\") + entry.digest + "  " + text + "\n";
}

std::string updatedProof(const std::string &proof, std::span<const ProofEntry> entries)
{
    std::set<std::filesystem::path> replaced;
    for (const ProofEntry &entry : entries) {
        replaced.insert(entry.file.lexically_normal());
    }
    std::string updated = withoutLines(proof, [&](const ProofEntry &line) { return replaced.contains(line.file); });
    for (const ProofEntry &entry : entries) {
        if (!entry.digest.empty()) {
            updated.append(updated.empty() || updated.ends_with('\n') ? "" : "\n").append(proofLine(entry));
        }
    }
    return updated;
}

std::string withdrawnProof(const std::string &proof, std::span<const ProofEntry> entries)
{
    std::map<std::filesystem::path, std::string> digests;
    for (const ProofEntry &entry : entries) {
        digests.insert_or_assign(entry.file.lexically_normal(), entry.digest);
    }
    return withoutLines(proof, [&](const ProofEntry &line) {
        const auto known = digests.find(line.file);
        return known != digests.end() && known->second == line.digest;
    });
}

std::error_code updateProofFile(const std::filesystem::path &folder, std::span<const ProofEntry> entries,
                                const FileOperations &files)
{
    return entries.empty() ? std::error_code()
                           : changeProof(
                                 folder, [&](const std::string &proof) { return updatedProof(proof, entries); }, files);
}

std::error_code withdrawFromProofFile(const std::filesystem::path &folder, std::span<const ProofEntry> entries,
                                      const FileOperations &files)
{
    struct stat status
    {};
    const bool hasProof = files.lstat((folder / proofFileName).c_str(), &status) == 0;
    return hasProof ? changeProof(
                          folder, [&](const std::string &proof) { return withdrawnProof(proof, entries); }, files)
                    : std::error_code();
}

} // namespace larkspan
