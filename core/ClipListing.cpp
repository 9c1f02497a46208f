#include "core/ClipListing.h"

#include <algorithm>
#include <system_error>

#include <QtCore/QCollator>
#include <QtCore/QLocale>

#include "core/FootageNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// Adds one folder's clips, and the folders to look into next.
void listOneFolder(const fs::path &folder, std::vector<FileUrl> &clips, std::vector<fs::path> &folders)
{
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (isHidden(name)) {
            continue;
        }
        if (isVideoFile(name)) {
            clips.emplace_back(entry->path());
        }
        std::error_code unknown; // a file whose kind can't be told is no folder to look into
        if (entry->symlink_status(unknown).type() == fs::file_type::directory && !isPackage(name)) {
            folders.push_back(entry->path());
        }
    }
}

QCollator naturalOrder()
{
    // The plain C locale knows no numbers in names, and a desktop without a language has that one.
    const QLocale locale = QLocale::system().language() == QLocale::C ? QLocale(QLocale::English) : QLocale::system();
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace

std::vector<FileUrl> listClips(const FileUrl &folder, const std::stop_token &stop)
{
    std::vector<FileUrl> clips;
    std::vector<fs::path> folders{folder.path()};
    while (!folders.empty() && !stop.stop_requested()) {
        const fs::path next = std::move(folders.back());
        folders.pop_back();
        listOneFolder(next, clips, folders);
    }

    struct Keyed
    {
        QCollatorSortKey key;
        FileUrl url;
    };
    const QCollator order = naturalOrder();
    std::vector<Keyed> keyed;
    keyed.reserve(clips.size());
    for (FileUrl &url : clips) {
        keyed.push_back({order.sortKey(url.displayPath()), std::move(url)});
    }
    // Names that the order takes for equal ("a.MOV", "a.mov") go by their bytes, so that the list is always the same.
    std::sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) {
        const int byKey = a.key.compare(b.key);
        return byKey != 0 ? byKey < 0 : a.url.path().native() < b.url.path().native();
    });
    std::transform(keyed.begin(), keyed.end(), clips.begin(), [](Keyed &entry) { return std::move(entry.url); });
    return clips;
}

} // namespace larkspan
