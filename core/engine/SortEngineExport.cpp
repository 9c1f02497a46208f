// Footage in a folder for each bin, and the event.
#include <algorithm>
#include <iterator>
#include <set>

#include "core/engine/SortEngineParts.h"
#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"

namespace larkspan {

void SortEngine::Exporting::start(const FileUrl &folder)
{
    const Work work{.folder = folder, .clips = m_engine.clips(), .root = m_engine.importRoot().value_or(folder)};
    if (m_engine.options().fileHandling == FileHandling::inPlace) {
        writeEvent(work, std::nullopt);
    } else {
        organizeAndWrite(work);
    }
}

void SortEngine::Exporting::organizeAndWrite(const Work &work)
{
    m_engine.cancelTask();
    m_engine.setStage({.kind = StageKind::organizing});
    m_engine.setProgress(0, m_engine.clipCount());
    const std::vector<ClipToOrganize> clips = toOrganize(work);
    const bool deleteSources = m_engine.options().fileHandling == FileHandling::move;
    UnfinishedCopy whole{
        .kind = deleteSources ? CopyKind::move : CopyKind::copy, .name = m_engine.displayName(), .folder = work.root};
    std::ranges::transform(clips, std::back_inserter(whole.files), [](const ClipToOrganize &clip) {
        return ClipFiles{clip.url, {}};
    });
    m_parts.tasks.start([this, work, clips, alreadyThere = notOrganized(work, clips), whole, deleteSources,
                         verify = m_engine.options().verifyLevel,
                         copying = std::make_shared<Copies::Scope>(m_parts.copies)](const TaskRunner::Run &run) {
        const auto entry = std::make_shared<CopyJournal::Entry>(m_parts.copies.enter(whole));
        std::optional<CopyRecord> record;
        auto organized =
            m_parts.seams.organizeByBin(clips, work.root, deleteSources, m_parts.copies.orderOf(run, verify, record));
        if (record) {
            record->source = work.folder;
            record->files.insert(record->files.end(), alreadyThere.begin(), alreadyThere.end());
            m_parts.copies.keepRecord(run, work.folder, *record);
        }
        const bool wasStopped = run.isStopped();
        if (wasStopped) {
            m_parts.copies.tellOfStoppedExport(*entry, whole, clips, organized);
        }
        // Not dropped with the run: footage that was moved needs its event even when another shoot is on show by now.
        m_parts.tasks.post([this, run, work, organized = std::move(organized), entry, wasStopped] {
            finishOrganizing(run, work, organized);
            if (!wasStopped) {
                entry->close(); // not before the event is written
            }
        });
    });
}

std::vector<ClipToOrganize> SortEngine::Exporting::toOrganize(const Work &work) const
{
    // A clip that was found in the very folder that it would be brought into is there already.
    const auto isInPlace = [&](const MediaClip &clip) {
        const auto places =
            clip.foundURL ? m_parts.seams.placesInBin(clip.url, work.root, clip.primaryBin) : std::vector<FileUrl>();
        return clip.foundURL && std::ranges::find(places, *clip.foundURL) != places.end();
    };
    std::vector<ClipToOrganize> list;
    for (const ClipPtr &clip : work.clips) {
        if (!isInPlace(*clip)) {
            list.push_back({.id = clip->id, .url = clip->sourceURL(), .primaryBin = clip->primaryBin});
        }
    }
    return list;
}

std::vector<CopiedFile> SortEngine::Exporting::notOrganized(const Work &work, std::span<const ClipToOrganize> organized)
{
    std::set<QUuid> ids;
    std::ranges::transform(organized, std::inserter(ids, ids.end()), &ClipToOrganize::id);
    std::vector<CopiedFile> files;
    for (const ClipPtr &clip : work.clips) {
        if (!ids.contains(clip->id)) {
            files.push_back({.source = clip->url, .destination = clip->foundURL, .state = CopyState::alreadyThere});
        }
    }
    return files;
}

void SortEngine::Exporting::finishOrganizing(const TaskRunner::Run &run, const Work &work,
                                             const OrganizeAnswer &organized)
{
    const bool isOnShow = !run.isStopped();
    if (organized) {
        for (const ClipPtr &clip : work.clips) {
            if (const auto moved = organized->find(clip->id); moved != organized->end()) {
                clip->destinationURL = moved->second;
            }
        }
        const auto directory = m_engine.options().writeNextToFootage ? std::optional(work.root) : std::nullopt;
        if (isOnShow) {
            Q_EMIT m_engine.clipsChanged();
            writeEvent(work, directory);
        } else {
            [[maybe_unused]] const auto written = writeEventFile(work, directory); // its screen is gone
        }
    } else if (isOnShow) {
        m_engine.setStage({.kind = StageKind::failed, .text = organized.error().description});
    }
    if (isOnShow && m_parts.footage.lacksThumbnails()) {
        m_parts.footage.load();
    }
}

FileUrl SortEngine::Exporting::folderOfEvent(const FileUrl &folder) const
{
    return m_engine.options().writeNextToFootage ? folder : documentsFolder().value_or(folder);
}

tl::expected<FileUrl, std::error_code> SortEngine::Exporting::writeEventFile(
    const Work &work, const std::optional<FileUrl> &directory) const
{
    const FileUrl folder = directory ? *directory : folderOfEvent(work.folder);
    // The name is taken as bytes: a folder whose name is no UTF-8 has its event under the same one.
    FileUrl event(folder.path() / (work.folder.lastPathBytes() + ".fcpxml"));
    const QString text = m_parts.seams.eventText(work.clips, work.folder.lastPathComponent());
    return writeFileAtomically(event.path(), text.toStdString()).map([&event] { return std::move(event); });
}

void SortEngine::Exporting::writeEvent(const Work &work, const std::optional<FileUrl> &directory)
{
    const auto event = writeEventFile(work, directory);
    if (!event) {
        m_engine.setStage({.kind = StageKind::failed, .text = QString::fromStdString(event.error().message())});
        return;
    }
    if (m_engine.options().openEditorAfterExport) {
        (m_engine.target() == NLE::finalCut ? m_parts.seams.openFile : m_parts.seams.revealFile)(*event);
    }
    m_engine.setStage({.kind = StageKind::done, .event = *event});
    m_engine.saveCurrentProject();
}

} // namespace larkspan
