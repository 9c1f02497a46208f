// The copy of a card.
#include <algorithm>
#include <iterator>
#include <set>

#include "core/CardNote.h"
#include "core/SortEngineParts.h"

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
    const auto &[source, volumeName, destination, verify] = card;
    const CardListing listing = listCard(source, run.stop);
    const std::vector<FileUrl> &urls = listing.clips;
    if (!listing.unreadable.empty()) {
        // A copy that lacks clips would pass for the whole card, which may be wiped next.
        m_parts.tasks.land(run, [this, note = unreadableNote(source, volumeName, listing.unreadable)] {
            m_parts.copies.addCardNote(note);
        });
    }
    if (urls.empty()) {
        m_parts.tasks.land(run, [this, source] {
            m_engine.setStage({.kind = StageKind::emptyFolder, .text = source.lastPathComponent()});
        });
        return false;
    }
    if (run.isStopped()) {
        return false; // with no folder made
    }
    m_parts.tasks.land(run, [this, total = static_cast<int>(urls.size())] { m_engine.setProgress(0, total); });
    const UnfinishedCopy whole{
        .kind = CopyKind::card, .name = volumeName, .folder = destination, .files = withSidecars(urls)};
    auto entry = m_parts.copies.enter(whole);
    std::optional<CopyRecord> record;
    const auto copied = m_parts.seams.copyFiles(urls, destination, m_parts.copies.orderOf(run, verify, record));
    const bool wasStopped = run.isStopped();
    const FileUrl folder = wasStopped ? m_parts.copies.tellOfStoppedCard(entry, whole, copying) : destination;
    if (copied) {
        m_parts.tasks.land(run, [this, destination] {
            m_engine.setProgress(0, m_engine.total());
            m_engine.adoptProject(destination); // until here the screens tell of the project that was open before
        });
    }
    if (record) {
        keepRecord(run, card, listing, folder, std::move(*record));
    }
    if (wasStopped) {
        return false;
    }
    entry.close();
    if (!copied) {
        m_parts.tasks.land(run, [this, failure = copied.error()] {
            m_engine.setStage({.kind = StageKind::failed, .text = failure.description});
        });
        return false;
    }
    return !run.isStopped();
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
