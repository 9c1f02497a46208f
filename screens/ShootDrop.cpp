#include "screens/ShootDrop.h"

namespace larkspan {

namespace {

// The path as bytes: a name that is no valid UTF-8 keeps its percent signs in QUrl's text, but not in its path.
std::filesystem::path localPath(const QUrl &url)
{
    const QByteArray encoded = url.path(QUrl::FullyEncoded).toLatin1();
    return QByteArray::fromPercentEncoding(encoded).toStdString();
}

} // namespace

std::optional<FileUrl> shootFolder(const QUrl &dropped)
{
    if (!dropped.isLocalFile()) {
        return std::nullopt;
    }
    std::filesystem::path path = localPath(dropped);
    if (!path.has_filename() && path.has_relative_path()) {
        path = path.parent_path(); // "/shoot/" is "/shoot"
    }
    std::error_code unreadable; // taken for a file
    if (std::filesystem::is_directory(path, unreadable)) {
        return FileUrl(path);
    }
    return FileUrl(path.parent_path());
}

void ShootDrop::take(const QList<QUrl> &urls)
{
    if (!m_engine || urls.isEmpty()) {
        return;
    }
    if (const auto folder = shootFolder(urls.front())) {
        m_engine->sortFolder(*folder);
    }
}

} // namespace larkspan
