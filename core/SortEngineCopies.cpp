// SortEngine's part that tells of copies which ended before their last file.
#include "core/SortEngine.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace larkspan {

void SortEngine::reset()
{
    keepNameOfCardCopy();
    dropShoot();
}

void SortEngine::resetToQuit()
{
    dropShoot();
}

void SortEngine::keepNameOfCardCopy()
{
    if (const auto copying = m_cardCopy.lock()) {
        copying->keepFolderName();
    }
}

void SortEngine::tellOfEarlierRuns()
{
    if (m_unfinished.journal().keepsNothing()) {
        return;
    }
    // On a thread, as it looks at disks that may take their time.
    m_tasks.start([this](const Run &) {
        for (const CopyJournal::Kept &copy : m_unfinished.leftBehind()) {
            m_tasks.post([this, copy] { addUnfinished(copy); });
        }
    });
}

FileUrl SortEngine::tellOfStoppedCard(CopyJournal::Entry &entry, const UnfinishedCopy &copy, const Copying &copying)
{
    const auto stopped = m_unfinished.stopCard(entry, copy, copying.folderName());
    if (!stopped) {
        return copy.folder;
    }
    m_tasks.post([this, stopped = *stopped] { addUnfinished(stopped); });
    return stopped->copy.folder;
}

void SortEngine::keepCardRecord(const Run &run, const CardCopy &card, const CardListing &listing, const FileUrl &folder,
                                CopyRecord record)
{
    record.kind = CopyKind::card;
    record.source = card.source;
    record.volumeName = card.volumeName;
    record.unreadable = listing.unreadable;
    std::set<std::filesystem::path> inRun; // the clips, and the sidecars among the other files
    std::ranges::transform(record.files, std::inserter(inRun, inRun.end()),
                           [](const CopiedFile &file) { return file.source.path(); });
    std::ranges::copy_if(listing.others, std::back_inserter(record.notCopied),
                         [&](const FileUrl &file) { return !inRun.contains(file.path()); });
    relocate(record, folder);
    keepRecord(run, folder, record);
}

void SortEngine::tellOfStoppedExport(CopyJournal::Entry &entry, UnfinishedCopy copy,
                                     std::span<const ClipToOrganize> clips, const OrganizeAnswer &organized)
{
    if (organized) {
        copy.files.clear();
        for (const ClipToOrganize &clip : clips) {
            if (!organized->contains(clip.id)) {
                copy.files.push_back({clip.url, {}});
            }
        }
    } else {
        copy.failure = organized.error().description;
    }
    if (const auto stopped = UnfinishedCopies::stopExport(entry, std::move(copy))) {
        m_tasks.post([this, stopped = *stopped] { addUnfinished(stopped); });
    }
}

void SortEngine::addUnfinished(const CopyJournal::Kept &copy)
{
    m_unfinished.add(copy);
    Q_EMIT unfinishedNoteChanged();
}

void SortEngine::dismissUnfinishedNote()
{
    if (!unfinishedNote().isEmpty()) {
        m_unfinished.dismiss();
        Q_EMIT unfinishedNoteChanged();
    }
}

} // namespace larkspan
