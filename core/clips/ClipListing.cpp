#include "core/clips/ClipListing.h"

#include <algorithm>
#include <system_error>

#include "core/base/NaturalOrder.h"
#include "core/clips/FootageNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// Adds one folder's files, and the folders to look into next. What kept it from being read to its end, if anything did.
std::error_code listOneFolder(const fs::path &folder, CardListing &listing, std::vector<fs::path> &folders)
{
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (isHidden(name)) {
            continue;
        }
        // The folder's own entry says what each name is; the file is asked only where the entry doesn't. A name of
        // unknown kind may be a folder, so it is opened later, and the error names the reason.
        std::error_code unknown;
        const bool isLink = entry->is_symlink(unknown);
        if (isVideoFile(name)) {
            listing.clips.emplace_back(entry->path());
        } else if (!unknown && !isLink && entry->is_regular_file(unknown)) {
            listing.others.emplace_back(entry->path());
        }
        if ((unknown || (!isLink && entry->is_directory(unknown))) && !isPackage(name)) {
            folders.push_back(entry->path());
        }
    }
    return error;
}

// The folder that some file systems keep for what a repair finds. It is closed to all but the system on every card.
bool isOfTheSystem(const fs::path &folder, const FileUrl &card, const std::error_code &error)
{
    return folder == card.path() / "lost+found" && error == std::errc::permission_denied;
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
        const std::error_code error = listOneFolder(next, listing, folders);
        if (error && !isOfTheSystem(next, card, error)) {
            listing.unreadable.emplace_back(next);
        }
    }
    std::ranges::sort(listing.unreadable, {}, &FileUrl::path);
    std::ranges::sort(listing.others, {}, &FileUrl::path);

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
    // Names that the order takes for equal ("a.MOV", "a.mov") are ordered by their bytes: the list is always the same.
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
