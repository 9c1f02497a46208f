// The copy of a card.
#include <algorithm>
#include <iterator>
#include <set>

#include "core/engine/SortEngineParts.h"

namespace larkspan {

void SortEngine::CardImport::start(const Card &card)
{
    auto copying = std::make_shared<Copies::Scope>(m_parts.copies);
    m_copying = copying;
    m_parts.tasks.start([this, card, copying = std::move(copying)](const TaskRunner::Run &run) mutable {
        const bool isCopied = copy(run, card, *copying);
        copying.reset();
        if (isCopied) {
            m_parts.sorting.run(run, card.destination);
        }
    });
}

void SortEngine::CardImport::keepFolderName()
{
    if (const auto copying = m_copying.lock()) {
        copying->keepFolderName();
    }
}

bool SortEngine::CardImport::copy(const TaskRunner::Run &run, const Card &card, const Copies::Scope &copying)
{
    auto entry = m_parts.copies.enter({.kind = CopyKind::card,
                                       .name = card.volumeName,
                                       .folder = card.destination,
                                       .end = UnfinishedCopy::End::listing});
    const CardListing listing = listCard(card.source, run.stop);
    tellOfUnreadable(run, card, listing);
    if (listing.clips.empty()) {
        entry.close();
        m_parts.tasks.land(run, [this, name = card.source.lastPathComponent()] {
            m_engine.setStage({.kind = StageKind::emptyFolder, .text = name});
        });
        return false;
    }
    if (run.isStopped()) {
        tellOfStoppedListing(entry, card, listing); // with no folder made
        return false;
    }
    return copyClips(run, card, listing, entry, copying);
}

// A copy that lacks clips would pass for the whole card, which may be wiped next.
void SortEngine::CardImport::tellOfUnreadable(const TaskRunner::Run &run, const Card &card, const CardListing &listing)
{
    if (!listing.unreadable.empty()) {
        m_parts.tasks.land(run, [this, unreadable = UnreadableCard{card.source, card.volumeName, listing.unreadable}] {
            m_parts.copies.addUnreadable(unreadable);
        });
    }
}

// Sidecars aren't looked for: the card may be slow, and something else waits.
void SortEngine::CardImport::tellOfStoppedListing(CopyJournal::Entry &entry, const Card &card,
                                                  const CardListing &listing)
{
    UnfinishedCopy copy{.kind = CopyKind::card, .name = card.volumeName, .folder = card.destination};
    std::ranges::transform(listing.clips, std::back_inserter(copy.files), [](const FileUrl &clip) {
        return ClipFiles{clip, {}};
    });
    m_parts.copies.tellOfStoppedListing(entry, std::move(copy));
}

bool SortEngine::CardImport::copyClips(const TaskRunner::Run &run, const Card &card, const CardListing &listing,
                                       CopyJournal::Entry &beginning, const Copies::Scope &copying)
{
    m_parts.tasks.land(run, [this, total = static_cast<int>(listing.clips.size())] { m_engine.setProgress(0, total); });
    const UnfinishedCopy whole{.kind = CopyKind::card,
                               .name = card.volumeName,
                               .folder = card.destination,
                               .files = withSidecars(listing.clips)};
    auto entry = m_parts.copies.enter(whole);
    std::optional<CopyRecord> record;
    CopyOrder order = m_parts.copies.orderOf(run, card.verify, record);
    // Bytes that are on their way have a folder, by which the next start finds what isn't in it.
    order.observer.progressed = [&beginning, tell = order.observer.progressed](const CopyProgress &progress) {
        beginning.close();
        tell(progress);
    };
    const auto copied = m_parts.seams.copyFiles(listing.clips, card.destination, order);
    beginning.close();
    const bool wasStopped = run.isStopped();
    const FileUrl folder = wasStopped ? m_parts.copies.tellOfStoppedCard(entry, whole, copying) : card.destination;
    if (copied) {
        adoptProject(run, card);
    }
    if (record) {
        keepRecord(run, card, listing, folder, std::move(*record));
    }
    if (!wasStopped) {
        entry.close();
    }
    if (!copied) {
        m_parts.tasks.land(run, [this, failure = copied.error()] {
            m_engine.setStage({.kind = StageKind::failed, .text = failure.description});
        });
    }
    return copied && !run.isStopped();
}

// Until here the screens show the project that was open before.
void SortEngine::CardImport::adoptProject(const TaskRunner::Run &run, const Card &card)
{
    m_parts.tasks.land(run, [this, destination = card.destination] {
        m_engine.setProgress(0, m_engine.total());
        m_engine.adoptProject(destination);
    });
}

void SortEngine::CardImport::keepRecord(const TaskRunner::Run &run, const Card &card, const CardListing &listing,
                                        const FileUrl &folder, CopyRecord record)
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
    m_parts.copies.keepRecord(run, folder, record);
}

} // namespace larkspan
