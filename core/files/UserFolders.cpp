#include "core/files/UserFolders.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

namespace larkspan {

std::optional<FileUrl> documentsFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty()) {
        return std::nullopt;
    }
    QDir().mkpath(folder); // a desktop may name a folder that nobody made yet
    return FileUrl(QFile::encodeName(folder).toStdString());
}

std::filesystem::path dataFolder(const char *name)
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data.isEmpty() ? std::filesystem::path()
                          : std::filesystem::path(QFile::encodeName(data).toStdString()) / "Larkspan" / name;
}

} // namespace larkspan
