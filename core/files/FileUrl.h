#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <QtCore/QString>

namespace larkspan {

// The place of a file. Holds the path as the bytes that the kernel gave, so that a name that is no valid UTF-8
// still opens; text for people and for the event is made from it on demand. Copies share the path: a shoot has many.
class FileUrl
{
public:
    FileUrl() = default;
    FileUrl(std::filesystem::path path) : m_path(std::make_shared<const std::filesystem::path>(std::move(path))) {}

    const std::filesystem::path &path() const;

    // For people: bytes that are no UTF-8 become U+FFFD. A trailing slash doesn't count as a component.
    QString displayPath() const;
    QString lastPathComponent() const;
    // The same as the file system holds it.
    std::string lastPathBytes() const;
    // The last component without its extension, and the extension alone (no dot). ".mov" is a name, not an extension.
    QString baseName() const;
    QString pathExtension() const;

    // "file://" and the path, each byte but letters, digits and -._~!$&'()*+,:=@/ percent-encoded.
    QString absoluteString() const;

    // The path as text that is stored and comes back the same: the path itself, or its URL if it is no valid UTF-8.
    QString storedPath() const;
    // None for text that can't name a file: empty, or with a NUL in it.
    static std::optional<FileUrl> fromStoredPath(const QString &text);

    FileUrl appending(const QString &component) const;

    friend bool operator==(const FileUrl &a, const FileUrl &b) { return a.m_path == b.m_path || a.path() == b.path(); }

private:
    std::shared_ptr<const std::filesystem::path> m_path; // null for the empty path
};

} // namespace larkspan
