#include "core/files/FileUrl.h"

#include <string_view>

namespace larkspan {

namespace {

constexpr QLatin1StringView urlScheme("file://");

std::filesystem::path lastComponent(const std::filesystem::path &path)
{
    return path.has_filename() ? path.filename() : path.parent_path().filename();
}

QString shown(const std::filesystem::path &path)
{
    return QString::fromUtf8(path.native());
}

bool standsUnencoded(unsigned char byte)
{
    constexpr std::string_view marks = "-._~!$&'()*+,:=@/";
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           marks.find(static_cast<char>(byte)) != std::string_view::npos;
}

} // namespace

const std::filesystem::path &FileUrl::path() const
{
    static const std::filesystem::path empty;
    return m_path ? *m_path : empty;
}

QString FileUrl::displayPath() const
{
    return shown(path());
}

QString FileUrl::lastPathComponent() const
{
    return shown(lastComponent(path()));
}

std::string FileUrl::lastPathBytes() const
{
    return lastComponent(path()).native();
}

QString FileUrl::baseName() const
{
    return shown(lastComponent(path()).stem());
}

QString FileUrl::pathExtension() const
{
    return shown(lastComponent(path()).extension()).mid(1);
}

QString FileUrl::absoluteString() const
{
    constexpr char hex[] = "0123456789ABCDEF";
    const std::string &bytes = path().native();
    QByteArray url(urlScheme.data(), urlScheme.size());
    url.reserve(static_cast<qsizetype>(url.size() + bytes.size() * 2));
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (standsUnencoded(byte)) {
            url.append(c);
        } else {
            url.append('%').append(hex[byte >> 4]).append(hex[byte & 0xF]);
        }
    }
    return QString::fromLatin1(url);
}

QString FileUrl::storedPath() const
{
    const QString text = shown(path());
    return text.toStdString() == path().native() ? text : absoluteString();
}

std::optional<FileUrl> FileUrl::fromStoredPath(const QString &text)
{
    std::string path = text.startsWith(urlScheme)
                           ? QByteArray::fromPercentEncoding(text.mid(urlScheme.size()).toUtf8()).toStdString()
                           : text.toStdString();
    if (path.empty() || path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return FileUrl(std::move(path));
}

FileUrl FileUrl::appending(const QString &component) const
{
    return {path() / component.toStdString()};
}

} // namespace larkspan
