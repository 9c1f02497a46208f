#include "core/files/FileUrls.h"

#include <QtCore/QSysInfo>

namespace larkspan {

namespace {

bool isOnThisMachine(const QUrl &url)
{
    const QString host = url.host();
    return url.isLocalFile() && (host.isEmpty() || host == QLatin1StringView("localhost") ||
                                 host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0);
}

} // namespace

std::optional<FileUrl> fileOfUrl(const QUrl &url)
{
    if (!isOnThisMachine(url) || url.path().isEmpty()) {
        return std::nullopt;
    }
    // A name that is no valid UTF-8 keeps its percent signs in QUrl's text, but not in its path.
    const QByteArray encoded = url.path(QUrl::FullyEncoded).toLatin1();
    std::filesystem::path path = QByteArray::fromPercentEncoding(encoded).toStdString();
    if (!path.has_filename() && path.has_relative_path()) {
        path = path.parent_path(); // "/shoot/" is "/shoot"
    }
    return FileUrl(path);
}

QUrl urlOfFile(const FileUrl &file)
{
    return QUrl::fromEncoded(file.absoluteString().toLatin1());
}

} // namespace larkspan
