#include "shell/panels/SaveName.h"

#include "core/files/FileUrl.h"
#include "shell/panels/FolderContents.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace fs = std::filesystem;

std::optional<QString> saveName(const QString &typed, const QString &suffix)
{
    const QString name = typed.trimmed();
    if (name.isEmpty() || name.contains(u'/') || name == u"."_s || name == u".."_s) {
        return std::nullopt;
    }
    return FileUrl(name.toStdString()).pathExtension().isEmpty() ? name + u'.' + suffix : name;
}

SavePlace lookAtPlace(const fs::path &file)
{
    std::error_code missing;
    const fs::file_status status = fs::status(file, missing);
    return {.exists = fs::exists(status),
            .isFolder = fs::is_directory(status),
            .problem = problemOfOpening(file.parent_path())};
}

} // namespace larkspan
