// The copies under way: their number, their progress, their records and report, and what a stopped one left out.
#include "core/engine/SortEngineParts.h"
#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"

namespace larkspan {

namespace {

// Writes the page beside the copies of the last run, or into Documents where that can't be. Returns its place.
tl::expected<FileUrl, std::error_code> writeReport(const std::vector<CopyRecord> &copies, const FileUrl &shoot,
                                                   const SortSeams &seams)
{
    const std::string page = seams.copyReport(copies, shoot.lastPathComponent()).toStdString();
    const std::string name = shoot.lastPathBytes() + " copy report.html";
    FileUrl file(copies.back().destination.path() / name);
    auto written = writeFileAtomically(file.path(), page);
    if (const auto documents = written ? std::nullopt : documentsFolder()) {
        file = FileUrl(documents->path() / name);
        written = writeFileAtomically(file.path(), page);
    }
    return written.map([&file] { return std::move(file); });
}

} // namespace

SortEngine::Copies::Scope::Scope(Copies &copies)
    : m_count(copies.m_parts.tasks, [&copies](int change) { copies.count(change); })
{}

SortEngine::Copies::Copies(SortEngine &engine, Parts &parts)
    : m_engine(engine)
    , m_parts(parts)
    , m_unfinished(CopyJournal(parts.seams.copyJournal), [&parts](const FileUrl &file, const FileUrl &folder) {
        return parts.seams.placesInBin(file, folder, QString());
    })
{}

void SortEngine::Copies::showRecordsOf(const QString &projectID)
{
    m_history.clear();
    const int shoot = ++m_shownShoots;
    if (projectID.isEmpty() || m_parts.seams.copyLog == nullptr) {
        return;
    }
    // Not dropped with the run: an export that begins meanwhile stops it, and adds its record to these.
    m_parts.tasks.start([this, projectID, shoot](const TaskRunner::Run &) {
        m_parts.tasks.post([this, shoot, records = m_parts.seams.copyLog->load(projectID)] {
            if (shoot == m_shownShoots) {
                m_history.restore(records);
            }
        });
    });
}

void SortEngine::Copies::showReport(const FileUrl &shoot)
{
    if (!m_history.hasReport() || m_isReporting) {
        return;
    }
    m_isReporting = true;
    // Not dropped with the run: the editor waits for it, whatever else is begun meanwhile.
    m_parts.tasks.start([this, shoot, copies = m_history.records()](const TaskRunner::Run &) {
        m_parts.tasks.post([this, report = writeReport(copies, shoot, m_parts.seams)] {
            m_isReporting = false;
            m_history.setProblem(report ? QString() : QString::fromStdString(report.error().message()));
            if (report) {
                m_parts.seams.openFile(*report);
            }
        });
    });
}

void SortEngine::Copies::addUnreadable(const UnreadableCard &card)
{
    m_unreadable.push_back(card);
    Q_EMIT m_engine.unreadableCardsChanged();
}

void SortEngine::Copies::dismissUnreadable()
{
    if (!m_unreadable.empty()) {
        m_unreadable.clear();
        Q_EMIT m_engine.unreadableCardsChanged();
    }
}

void SortEngine::Copies::dismissUnfinished()
{
    if (!unfinished().empty()) {
        m_unfinished.dismiss();
        Q_EMIT m_engine.unfinishedCopiesChanged();
    }
}

void SortEngine::Copies::lookAtEarlierRuns()
{
    if (m_unfinished.journal().keepsNothing()) {
        return;
    }
    // On a thread, as it looks at disks that may take their time.
    m_parts.tasks.start([this](const TaskRunner::Run &) {
        for (CopyJournal::Kept &copy : m_unfinished.leftBehind()) {
            post(std::move(copy));
        }
        pruneLog();
    });
}

// A copy that isn't finished may need its record however old it is.
void SortEngine::Copies::pruneLog() const
{
    if (m_parts.seams.copyLog != nullptr && m_unfinished.journal().isEmpty()) {
        m_parts.seams.copyLog->prune();
    }
}

CopyOrder SortEngine::Copies::orderOf(const TaskRunner::Run &run, VerifyLevel verify, std::optional<CopyRecord> &record)
{
    return {.verify = verify,
            .progress =
                [this, run](int done, int total) {
                    m_parts.tasks.land(run, [this, done, total] { m_engine.setProgress(done, total); });
                },
            .stop = run.stop,
            .observer = {.progressed =
                             [this, run](const CopyProgress &progress) {
                                 m_parts.tasks.land(run, [this, progress] { m_history.setProgress(progress); });
                             },
                         .ended = [&record](CopyRecord ended) { record = std::move(ended); }}};
}

void SortEngine::Copies::keepRecord(const TaskRunner::Run &run, const FileUrl &shoot, const CopyRecord &record)
{
    if (m_parts.seams.copyLog != nullptr) {
        m_parts.seams.copyLog->save(projectID(shoot), record);
    }
    m_parts.tasks.land(run, [this, record] { m_history.add(record); });
}

void SortEngine::Copies::tellOfStoppedListing(CopyJournal::Entry &entry, UnfinishedCopy copy)
{
    if (auto stopped = UnfinishedCopies::stopListing(entry, std::move(copy))) {
        post(std::move(*stopped));
    }
}

FileUrl SortEngine::Copies::tellOfStoppedCard(CopyJournal::Entry &entry, const UnfinishedCopy &copy,
                                              const Scope &copying)
{
    const auto stopped = m_unfinished.stopCard(entry, copy, copying.folderName());
    if (!stopped) {
        return copy.folder;
    }
    post(*stopped);
    return stopped->copy.folder;
}

void SortEngine::Copies::tellOfStoppedExport(CopyJournal::Entry &entry, UnfinishedCopy copy,
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
    if (auto stopped = UnfinishedCopies::stopExport(entry, std::move(copy))) {
        post(std::move(*stopped));
    }
}

void SortEngine::Copies::count(int change)
{
    const bool wasCopying = m_engine.isCopying();
    m_engine.m_copies += change;
    if (wasCopying != m_engine.isCopying()) {
        Q_EMIT m_engine.isCopyingChanged();
    }
}

void SortEngine::Copies::post(CopyJournal::Kept copy)
{
    m_parts.tasks.post([this, copy = std::move(copy)] { add(copy); });
}

void SortEngine::Copies::add(const CopyJournal::Kept &copy)
{
    m_unfinished.add(copy);
    Q_EMIT m_engine.unfinishedCopiesChanged();
}

} // namespace larkspan
