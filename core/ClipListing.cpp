#include "core/ClipListing.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <QtCore/QCollator>
#include <QtCore/QLocale>

#include "core/FootageNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// Adds one folder's clips, and the folders to look into next. What kept it from being read to its end, if anything did.
std::error_code listOneFolder(const fs::path &folder, std::vector<FileUrl> &clips, std::vector<fs::path> &folders)
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
    return error;
}

// Not one that is merely closed to us or gone, the likes of which every disk has.
bool isDamage(const std::error_code &error)
{
    constexpr std::array harmless{std::errc::permission_denied, std::errc::operation_not_permitted,
                                  std::errc::no_such_file_or_directory, std::errc::not_a_directory};
    return error && std::ranges::none_of(harmless, [&error](std::errc known) { return error == known; });
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

CardListing listCard(const FileUrl &card, const std::stop_token &stop)
{
    CardListing listing;
    std::vector<FileUrl> &clips = listing.clips;
    std::vector<fs::path> folders{card.path()};
    while (!folders.empty() && !stop.stop_requested()) {
        const fs::path next = std::move(folders.back());
        folders.pop_back();
        if (isDamage(listOneFolder(next, clips, folders)) && !listing.damaged) {
            listing.damaged = FileUrl(next);
        }
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
    return listing;
}

std::vector<FileUrl> listClips(const FileUrl &folder, const std::stop_token &stop)
{
    return listCard(folder, stop).clips;
}

} // namespace larkspan
