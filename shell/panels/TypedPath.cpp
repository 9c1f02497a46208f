#include "shell/panels/TypedPath.h"

#include "core/files/FileUrls.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// Terminals and file managers copy paths with quotation marks.
QString withoutQuotes(const QString &text)
{
    const bool isQuoted =
        text.size() > 1 && text.front() == text.back() && (text.front() == u'"' || text.front() == u'\'');
    return isQuoted ? text.mid(1, text.size() - 2) : text;
}

fs::path withoutSlash(const fs::path &path)
{
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

} // namespace

std::optional<fs::path> typedPath(const QString &text, const fs::path &open, const fs::path &home)
{
    const QString typed = withoutQuotes(text.trimmed());
    if (typed.isEmpty() || typed.contains(QChar::Null)) {
        return std::nullopt;
    }
    if (typed.startsWith(u"file:"_s)) {
        const auto file = fileOfUrl(QUrl(typed));
        return file ? std::optional(withoutSlash(file->path().lexically_normal())) : std::nullopt;
    }
    fs::path path;
    if (typed == u'~' || typed.startsWith(u"~/"_s)) {
        path = home / typed.mid(2).toStdString();
    } else {
        path = open / typed.toStdString(); // yields the typed path alone if it is absolute
    }
    return withoutSlash(path.lexically_normal());
}

} // namespace larkspan
