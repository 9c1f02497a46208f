#include "core/CardFolder.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

bool isTaken(const FileUrl &url)
{
    std::error_code error; // what can't be looked at counts as taken only if it is surely there
    return std::filesystem::exists(std::filesystem::symlink_status(url.path(), error));
}

} // namespace

FileUrl datedImportFolder(const QString &volumeName, const FileUrl &root, QDate today)
{
    QString name = volumeName;
    name.replace(u'/', u'-').replace(u':', u'-');
    const QString base = name + u" — "_s + today.toString(u"yyyy-MM-dd"_s);
    FileUrl folder = root.appending(base);
    for (int number = 2; isTaken(folder); ++number) {
        folder = root.appending(u"%1 (%2)"_s.arg(base).arg(number));
    }
    return folder;
}

} // namespace larkspan
