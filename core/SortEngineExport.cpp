// SortEngine's part that takes a sorted shoot out of the program: folders of footage, the event, and texts for whoever
// tunes the bins.
#include "core/SortEngine.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "core/AtomicFile.h"
#include "core/Diagnostics.h"
#include "core/UserFolders.h"

namespace larkspan {

QString SortEngine::exportSummary() const
{
    const QString name = m_folder ? folderName() : QStringLiteral("Event");
    return QStringLiteral("%1.fcpxml · %2 bins · %3 clips")
        .arg(name, QString::number(binCount()), QString::number(clipCount()));
}

void SortEngine::exportEvent()
{
    if (target() == NLE::premiere || !m_folder) {
        return;
    }
    if (m_looksForFootage && std::ranges::any_of(clips(), [](const ClipPtr &clip) { return clip->isFootageGone(); })) {
        m_exportsOnceFound = true;
        return;
    }
    closeGapsInBins();
    const Export work{.folder = *m_folder, .clips = clips(), .root = importRoot().value_or(*m_folder)};
    if (options().fileHandling == FileHandling::inPlace) {
        writeEvent(work, std::nullopt);
    } else {
        organizeAndWrite(work);
    }
}

std::optional<FileUrl> SortEngine::handoffFile(HandoffFormat format) const
{
    if (!m_folder) {
        return std::nullopt;
    }
    const std::filesystem::path folder =
        m_stage.event ? m_stage.event->path().parent_path() : folderOfEvent(*m_folder).path();
    return FileUrl(folder / (m_folder->lastPathBytes() + handoffSuffix(format).toStdString()));
}

void SortEngine::chooseHandoff()
{
    m_seams.chooseHandoff();
}

void SortEngine::showCopyReport()
{
    if (m_folder) {
        m_copyHistory.showReport(*m_folder);
    }
}

void SortEngine::backToResults()
{
    if (m_stage.kind == StageKind::done || m_stage.kind == StageKind::failed) {
        setStage({.kind = StageKind::results});
    }
}

void SortEngine::openEvent()
{
    if (m_stage.event) {
        m_seams.openFile(*m_stage.event);
    }
}

void SortEngine::revealEvent()
{
    if (m_stage.event) {
        m_seams.revealFile(*m_stage.event);
    }
}

tl::expected<void, std::error_code> SortEngine::exportDiagnostics(const FileUrl &url) const
{
    return writeFileAtomically(url.path(), clipDiagnostics(clips()).toStdString());
}

void SortEngine::organizeAndWrite(const Export &work)
{
    cancelTask();
    setStage({.kind = StageKind::organizing});
    setProgress(0, clipCount());
    const std::vector<ClipToOrganize> clips = toOrganize(work);
    const bool deleteSources = options().fileHandling == FileHandling::move;
    UnfinishedCopy whole{
        .kind = deleteSources ? CopyKind::move : CopyKind::copy, .name = displayName(), .folder = work.root};
    std::ranges::transform(clips, std::back_inserter(whole.files), [](const ClipToOrganize &clip) {
        return ClipFiles{clip.url, {}};
    });
    m_tasks.start([this, work, clips, alreadyThere = notOrganized(work, clips), whole, deleteSources,
                   verify = options().verifyLevel, copying = std::make_shared<Copying>(*this)](const Run &run) {
        const auto entry = std::make_shared<CopyJournal::Entry>(m_unfinished.journal().begin(whole));
        std::optional<CopyRecord> record;
        auto organized = m_seams.organizeByBin(clips, work.root, deleteSources, orderOf(run, verify, record));
        if (record) {
            record->source = work.folder;
            record->files.insert(record->files.end(), alreadyThere.begin(), alreadyThere.end());
            keepRecord(run, work.folder, *record);
        }
        const bool wasStopped = run.isStopped();
        if (wasStopped) {
            tellOfStoppedExport(*entry, whole, clips, organized);
        }
        // Not dropped with the run: footage that was moved needs its event even when another shoot is on show by now.
        m_tasks.post([this, run, work, organized = std::move(organized), entry, wasStopped] {
            finishOrganizing(run, work, organized);
            if (!wasStopped) {
                entry->close(); // not before the event is written
            }
        });
    });
}

CopyOrder SortEngine::orderOf(const Run &run, VerifyLevel verify, std::optional<CopyRecord> &record)
{
    return {
        .verify = verify,
        .progress = [this, run](int done,
                                int total) { m_tasks.land(run, [this, done, total] { setProgress(done, total); }); },
        .stop = run.stop,
        .observer = {.progressed =
                         [this, run](const CopyProgress &progress) {
                             m_tasks.land(run, [this, progress] { m_copyHistory.setProgress(progress); });
                         },
                     .ended = [&record](CopyRecord ended) { record = std::move(ended); }}};
}

void SortEngine::keepRecord(const Run &run, const FileUrl &shoot, const CopyRecord &record)
{
    if (m_seams.copyLog != nullptr) {
        m_seams.copyLog->save(projectID(shoot), record);
    }
    m_tasks.land(run, [this, record] { m_copyHistory.add(record); });
}

std::vector<ClipToOrganize> SortEngine::toOrganize(const Export &work) const
{
    // A clip that was found in the very folder that it would be brought into is there already.
    const auto isInPlace = [&](const MediaClip &clip) {
        const auto places =
            clip.foundURL ? m_seams.placesInBin(clip.url, work.root, clip.primaryBin) : std::vector<FileUrl>();
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

std::vector<CopiedFile> SortEngine::notOrganized(const Export &work, std::span<const ClipToOrganize> organized)
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

void SortEngine::finishOrganizing(const Run &run, const Export &work, const OrganizeAnswer &organized)
{
    const bool isOnShow = !run.isStopped();
    if (organized) {
        for (const ClipPtr &clip : work.clips) {
            if (const auto moved = organized->find(clip->id); moved != organized->end()) {
                clip->destinationURL = moved->second;
            }
        }
        const auto directory = options().writeNextToFootage ? std::optional(work.root) : std::nullopt;
        if (isOnShow) {
            Q_EMIT clipsChanged();
            writeEvent(work, directory);
        } else {
            [[maybe_unused]] const auto written = writeEventFile(work, directory); // its screen is gone
        }
    } else if (isOnShow) {
        setStage({.kind = StageKind::failed, .text = organized.error().description});
    }
    if (isOnShow && m_lacksThumbnails) {
        loadThumbnails();
    }
}

FileUrl SortEngine::folderOfEvent(const FileUrl &folder) const
{
    return options().writeNextToFootage ? folder : documentsFolder().value_or(folder);
}

tl::expected<FileUrl, std::error_code> SortEngine::writeEventFile(const Export &work,
                                                                  const std::optional<FileUrl> &directory) const
{
    const FileUrl folder = directory ? *directory : folderOfEvent(work.folder);
    // The name goes by its bytes: a folder whose name is no UTF-8 has its event under the same one.
    FileUrl event(folder.path() / (work.folder.lastPathBytes() + ".fcpxml"));
    const QString text = m_seams.eventText(work.clips, work.folder.lastPathComponent());
    return writeFileAtomically(event.path(), text.toStdString()).map([&event] { return std::move(event); });
}

void SortEngine::writeEvent(const Export &work, const std::optional<FileUrl> &directory)
{
    const auto event = writeEventFile(work, directory);
    if (!event) {
        setStage({.kind = StageKind::failed, .text = QString::fromStdString(event.error().message())});
        return;
    }
    if (options().openEditorAfterExport) {
        (target() == NLE::finalCut ? m_seams.openFile : m_seams.revealFile)(*event);
    }
    setStage({.kind = StageKind::done, .event = *event});
    saveCurrentProject();
}

} // namespace larkspan
