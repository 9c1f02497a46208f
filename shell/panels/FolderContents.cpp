#include "shell/panels/FolderContents.h"

#include <algorithm>
#include <ranges>

#include <QtCore/QCoreApplication>

#include "core/base/NaturalOrder.h"
#include "core/clips/FootageNames.h"
#include "core/files/FileUrl.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

namespace fs = std::filesystem;

void sortAsPeopleCount(std::vector<std::string> &names)
{
    struct Keyed
    {
        QCollatorSortKey key;
        std::string name;
    };
    const QCollator order = naturalOrder();
    std::vector<Keyed> keyed;
    keyed.reserve(names.size());
    for (std::string &name : names) {
        keyed.push_back({order.sortKey(QString::fromUtf8(name)), std::move(name)});
    }
    std::ranges::sort(keyed, [](const Keyed &a, const Keyed &b) {
        const int byKey = a.key.compare(b.key);
        return byKey != 0 ? byKey < 0 : a.name < b.name;
    });
    std::ranges::transform(keyed, names.begin(), [](Keyed &entry) { return std::move(entry.name); });
}

bool isFolder(const fs::path &path)
{
    std::error_code unreachable; // counts as none
    return fs::is_directory(path, unreachable);
}

} // namespace

tl::expected<FolderContents, std::error_code> readFolder(const fs::path &folder, const FileFilter &shows,
                                                         const std::stop_token &stop)
{
    FolderContents contents;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator() && !stop.stop_requested(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        std::error_code unknown; // an entry of unknown kind is treated as a file
        if (isHidden(name)) {
            continue;
        }
        if (entry->is_directory(unknown)) {
            if (!isPackage(name)) {
                contents.folders.push_back(name.native());
            }
        } else if (shows(name)) {
            contents.files.push_back(name.native());
        }
    }
    if (error) {
        return tl::make_unexpected(error);
    }
    sortAsPeopleCount(contents.folders);
    sortAsPeopleCount(contents.files);
    return contents;
}

fs::path firstFolder(std::span<const fs::path> candidates)
{
    const auto found = std::ranges::find_if(candidates, isFolder);
    return found == candidates.end() ? fs::path("/") : *found;
}

fs::path nearestFolder(fs::path folder)
{
    while (folder.has_relative_path() && !isFolder(folder)) {
        folder = folder.parent_path();
    }
    return folder;
}

std::error_code problemOfOpening(const fs::path &folder)
{
    std::error_code problem;
    const fs::directory_iterator opened(folder, problem);
    return problem;
}

QString folderProblem(const fs::path &folder, const std::error_code &error)
{
    const auto text = [](const char *english) { return QCoreApplication::translate("FolderContents", english); };
    const QString name = FileUrl(folder).lastPathComponent();
    const QString shown = name.isEmpty() ? FileUrl(folder).displayPath() : name;
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        return text("“%1” isn't there.").arg(shown);
    }
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted) {
        return text("You don't have permission to open “%1”.").arg(shown);
    }
    return text("“%1” can't be read: %2.").arg(shown, QString::fromStdString(error.message()));
}

} // namespace larkspan
