#include "core/copies/CardFolder.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <linux/fs.h>

#include "core/files/AtomicFile.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

bool isTaken(const FileUrl &url)
{
    std::error_code error; // what can't be looked at counts as taken only if it is surely there
    return std::filesystem::exists(std::filesystem::symlink_status(url.path(), error));
}

// As rename() answers; EEXIST for a name that is taken.
int renameWithoutClobbering(const FileUrl &from, const FileUrl &to)
{
    if (::renameat2(AT_FDCWD, from.path().c_str(), AT_FDCWD, to.path().c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) {
        return -1;
    }
    // A file system that can't promise it. A folder never replaces a file, nor another folder that holds anything.
    if (isTaken(to)) {
        errno = EEXIST;
        return -1;
    }
    return std::rename(from.path().c_str(), to.path().c_str());
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

FileUrl markUnfinished(const FileUrl &folder)
{
    const std::filesystem::path above =
        folder.path().has_filename() ? folder.path().parent_path() : folder.path().parent_path().parent_path();
    const std::string base = folder.lastPathBytes() + " (unfinished)";
    FileUrl marked(above / base);
    for (int number = 2; renameWithoutClobbering(folder, marked) != 0; ++number) {
        if (errno != EEXIST && errno != ENOTEMPTY) {
            return folder;
        }
        marked = FileUrl(above / (base + " (" + std::to_string(number) + ")"));
    }
    syncFolder(above);
    return marked;
}

} // namespace larkspan
