#include "core/copies/UnfinishedCopies.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "core/copies/CardFolder.h"

namespace larkspan {

namespace {

using End = UnfinishedCopy::End;

bool isThere(const std::filesystem::path &path)
{
    std::error_code unreachable; // a disk that isn't connected
    return std::filesystem::is_directory(path, unreachable);
}

} // namespace

// Files are copied in the order of the list, each under its own name or the next one that is free. So each takes the
// first of its places that no earlier one has taken.
void UnfinishedCopies::keepMissing(UnfinishedCopy &card) const
{
    std::set<std::filesystem::path> taken;
    const auto placeOf = [&](const FileUrl &file) {
        const std::vector<FileUrl> places = m_places(file, card.folder);
        const auto place = std::ranges::find_if(
            places, [&](const FileUrl &candidate) { return taken.insert(candidate.path()).second; });
        return place == places.end() ? std::nullopt : std::optional(*place);
    };
    std::vector<ClipFiles> missing;
    for (const ClipFiles &files : card.files) {
        const auto clip = placeOf(files.clip);
        if (!clip) {
            missing.push_back({files.clip, {}});
            continue;
        }
        for (const Sidecar &sidecar : files.sidecars) {
            if (!placeOf(FileUrl(sidecar.nameBeside(clip->lastPathBytes())))) {
                missing.push_back({sidecar.url, {}});
            }
        }
    }
    card.files = std::move(missing);
}

std::optional<CopyJournal::Kept> UnfinishedCopies::stopCard(CopyJournal::Entry &entry, UnfinishedCopy copy,
                                                            FolderName name) const
{
    keepMissing(copy);
    if (copy.files.empty()) {
        entry.close();
        return std::nullopt;
    }
    if (name == FolderName::marked) {
        copy.folder = markUnfinished(copy.folder);
    }
    copy.end = End::stopped;
    entry.keep(copy);
    return CopyJournal::Kept{entry.file(), std::move(copy)};
}

std::optional<CopyJournal::Kept> UnfinishedCopies::stopListing(CopyJournal::Entry &entry, UnfinishedCopy copy)
{
    if (copy.files.empty()) {
        entry.close(); // perhaps it holds no clips at all
        return std::nullopt;
    }
    copy.end = End::notBegun;
    entry.keep(copy);
    return CopyJournal::Kept{entry.file(), std::move(copy)};
}

std::optional<CopyJournal::Kept> UnfinishedCopies::stopExport(CopyJournal::Entry &entry, UnfinishedCopy copy)
{
    if (copy.files.empty()) {
        entry.close();
        return std::nullopt;
    }
    copy.end = End::stopped;
    entry.keep(copy);
    return CopyJournal::Kept{entry.file(), std::move(copy)};
}

bool UnfinishedCopies::settleCutOff(UnfinishedCopy &copy) const
{
    if (copy.end == End::listing) {
        // A folder that was made has an entry of its own, which says more.
        copy.end = isThere(copy.folder.path()) ? End::cutOff : End::cutOffBeforeItBegan;
        return true;
    }
    copy.end = End::cutOff;
    if (copy.kind != CopyKind::card) {
        return true;
    }
    if (!isThere(copy.folder.path())) {
        copy.files.clear(); // the copy hadn't begun, or somebody has thrown it away
        return isThere(copy.folder.path().parent_path());
    }
    keepMissing(copy);
    if (!copy.files.empty()) {
        copy.folder = markUnfinished(copy.folder);
    }
    return true;
}

std::vector<CopyJournal::Kept> UnfinishedCopies::leftBehind() const
{
    std::vector<CopyJournal::Kept> all;
    for (CopyJournal::Kept &kept : m_journal.leftBehind()) {
        if (kept.copy.end == End::none || kept.copy.end == End::listing) {
            if (!settleCutOff(kept.copy)) {
                continue;
            }
            CopyJournal::replace(kept);
        }
        if (kept.copy.files.empty() && kept.copy.end != End::cutOffBeforeItBegan) {
            CopyJournal::forget(kept.file);
        } else {
            all.push_back(std::move(kept));
        }
    }
    return all;
}

std::vector<UnfinishedCopy> UnfinishedCopies::copies() const
{
    std::vector<UnfinishedCopy> all;
    std::ranges::transform(m_copies, std::back_inserter(all), &CopyJournal::Kept::copy);
    return all;
}

void UnfinishedCopies::dismiss()
{
    for (const CopyJournal::Kept &kept : std::exchange(m_copies, {})) {
        CopyJournal::forget(kept.file);
    }
}

} // namespace larkspan
