#include "core/SortEngine.h"

#include <algorithm>

#include "core/CardFolder.h"
#include "core/CardNote.h"
#include "core/ClipListing.h"
#include "core/ClipPipeline.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int coresLeftFree = 2;
constexpr int leastWidth = 2;
constexpr int mostWidth = 6; // a large machine must not open dozens of decoders, or requests to a model, at once

// One of the folders is in the other, or they are the same. By their names alone.
bool overlap(const std::filesystem::path &a, const std::filesystem::path &b)
{
    const auto text = [](const std::filesystem::path &path) { return (path / "").lexically_normal().native(); };
    return text(a).starts_with(text(b)) || text(b).starts_with(text(a));
}

} // namespace

SortEngine::SortEngine(SortSeams seams, int activeProcessorCount, QObject *parent)
    : QObject(parent)
    , m_seams(std::move(seams))
    , m_width(std::clamp(activeProcessorCount - coresLeftFree, leastWidth, mostWidth))
    , m_shelf(m_seams.projects)
    , m_settings(m_seams.settings)
    , m_unfinished(
          CopyJournal(m_seams.copyJournal),
          [this](const FileUrl &file, const FileUrl &folder) { return m_seams.placesInBin(file, folder, QString()); })
    , m_tasks({.items = m_width})
{
    connect(this, &SortEngine::clipsChanged, this, &SortEngine::canExportChanged);
    connect(this, &SortEngine::targetChanged, this, &SortEngine::canExportChanged);
    connect(this, &SortEngine::stageChanged, this, &SortEngine::editsChanged);
    tellOfEarlierRuns();
}

SortEngine::~SortEngine()
{
    cancelTask();
}

void SortEngine::sortFolder(const FileUrl &url)
{
    if (m_folder && overlap(url.path(), m_folder->path())) {
        keepNameOfCardCopy(); // the sort reads it under this name
    }
    cancelTask();
    if (url != m_folder) { // the same once more is still what came from its card
        m_isRemovableImport = false;
        m_importVolumeName.reset();
    }
    beginWorking(url);
    adoptProject(url);
    m_settings.rememberRecent(url);
    Q_EMIT recentsChanged();
    m_tasks.start([this, url](const Run &run) { runSort(run, url); });
}

void SortEngine::chooseFolder()
{
    const FolderPanel panel{.prompt = u"Sort This Folder"_s,
                            .message = u"Choose the folder holding this shoot's raw clips."_s};
    m_seams.chooseFolder(panel, [this](const FileUrl &url) { sortFolder(url); });
}

void SortEngine::chooseImportRoot()
{
    const FolderPanel panel{.prompt = u"Use as Shoots Folder"_s,
                            .message = u"Choose where new SD-card imports should be organized."_s};
    m_seams.chooseFolder(panel, [this](const FileUrl &url) { setImportRoot(url); });
}

void SortEngine::importCard(const FileUrl &source, const QString &volumeName)
{
    if (!importRoot()) {
        return;
    }
    std::error_code unreachable; // a folder that can't even be looked at isn't available either
    if (!std::filesystem::exists(importRoot()->path(), unreachable)) {
        setStage({.kind = StageKind::failed,
                  .text = u"Your Shoots folder isn't available right now — check it's connected, then try again."_s});
        return;
    }
    cancelTask();
    const FileUrl destination = datedImportFolder(volumeName, *importRoot(), QDate::currentDate());
    m_isRemovableImport = true;
    m_importVolumeName = volumeName;
    if (options().fileHandling == FileHandling::inPlace) {
        // A card's clips have no place to stay once it is ejected, so the setting changes for good.
        SortOptions copying = options();
        copying.fileHandling = FileHandling::copy;
        setOptions(copying);
    }
    beginWorking(destination);
    m_settings.rememberRecent(destination);
    Q_EMIT recentsChanged();
    auto copying = std::make_shared<Copying>(*this);
    m_cardCopy = copying;
    m_tasks.start([this, card = CardCopy{source, volumeName, destination, options().verifyLevel},
                   copying = std::move(copying)](const Run &run) mutable {
        const bool isCopied = copyCard(run, card, *copying);
        copying.reset();
        if (isCopied) {
            runSort(run, card.destination);
        }
    });
}

void SortEngine::dropShoot()
{
    cancelTask();
    setFolder(std::nullopt);
    clearClips();
    setPreviewClip(nullptr);
    m_copyHistory.adopt({});
    m_currentProjectID.reset();
    m_projectName.clear();
    m_isRemovableImport = false;
    m_importVolumeName.reset();
    Q_EMIT folderChanged();
    setStage({.kind = StageKind::empty});
}

void SortEngine::sortAgain()
{
    if (m_folder) {
        sortFolder(FileUrl(*m_folder));
    }
}

void SortEngine::runSort(const Run &run, const FileUrl &folder)
{
    std::vector<FileUrl> urls = listClips(folder, run.stop);
    if (urls.empty()) {
        m_tasks.land(
            run, [this, folder] { setStage({.kind = StageKind::emptyFolder, .text = folder.lastPathComponent()}); });
        return;
    }
    // Back on the main thread for what the editor has chosen by now, which holds for the whole run.
    m_tasks.land(run, [this, run, urls = std::move(urls)] {
        setProgress(0, static_cast<int>(urls.size()));
        const SortChoices choices{options(), modelTier(), m_cloudSettings};
        m_tasks.resume(run, [this, urls, choices](const Run &same) { processClips(same, urls, choices); });
    });
}

void SortEngine::processClips(const Run &run, std::span<const FileUrl> urls, const SortChoices &choices)
{
    const auto classifier = makeClassifier(run, choices);
    const auto width = static_cast<std::size_t>(m_width);
    for (std::size_t first = 0; first < urls.size(); first += width) {
        if (run.isStopped()) {
            return;
        }
        const auto batch = urls.subspan(first, std::min(width, urls.size() - first));
        m_tasks.land(run, [this, landed = processBatch(run, batch, *classifier, choices.options)] {
            m_shoot.append(landed);
            Q_EMIT clipsChanged();
            setProgress(clipCount(), m_total);
        });
    }
    m_tasks.land(run, [this, options = choices.options] { finishSort(options); });
}

std::vector<ClipPtr> SortEngine::processBatch(const Run &run, std::span<const FileUrl> urls,
                                              const FrameClassifier &classifier, const SortOptions &options)
{
    std::vector<ClipPtr> clips(urls.size());
    m_tasks.forEach(run, urls.size(),
                    [&](std::size_t i) { clips[i] = processClip(urls[i], classifier, options, m_seams, run.stop); });
    return clips;
}

void SortEngine::finishSort(const SortOptions &options)
{
    m_shoot.arrange(options.splitRepeatedRooms);
    announceClips();
    setSelectedBin(m_shoot.firstBin());
    setStage({.kind = StageKind::results});
    saveCurrentProject();
}

bool SortEngine::copyCard(const Run &run, const CardCopy &card, const Copying &copying)
{
    const auto &[source, volumeName, destination, verify] = card;
    const CardListing listing = listCard(source, run.stop);
    const std::vector<FileUrl> &urls = listing.clips;
    if (!listing.unreadable.empty()) {
        // A copy that lacks clips would pass for the whole card, which may be wiped next.
        m_tasks.land(run, [this, note = unreadableNote(source, volumeName, listing.unreadable)] { addCardNote(note); });
    }
    if (urls.empty()) {
        m_tasks.land(
            run, [this, source] { setStage({.kind = StageKind::emptyFolder, .text = source.lastPathComponent()}); });
        return false;
    }
    if (run.isStopped()) {
        return false; // with no folder made
    }
    m_tasks.land(run, [this, total = static_cast<int>(urls.size())] { setProgress(0, total); });
    const UnfinishedCopy whole{
        .kind = CopyKind::card, .name = volumeName, .folder = destination, .files = withSidecars(urls)};
    auto entry = m_unfinished.journal().begin(whole);
    std::optional<CopyRecord> record;
    const auto copied = m_seams.copyFiles(urls, destination, orderOf(run, verify, record));
    const bool wasStopped = run.isStopped();
    const FileUrl folder = wasStopped ? tellOfStoppedCard(entry, whole, copying) : destination;
    if (copied) {
        m_tasks.land(run, [this, destination] {
            setProgress(0, m_total);
            adoptProject(destination); // until here the screens tell of the project that was open before
        });
    }
    if (record) {
        keepCardRecord(run, card, listing, folder, std::move(*record));
    }
    if (wasStopped) {
        return false;
    }
    entry.close();
    if (!copied) {
        m_tasks.land(run, [this, failure = copied.error()] {
            setStage({.kind = StageKind::failed, .text = failure.description});
        });
        return false;
    }
    return !run.isStopped();
}

std::shared_ptr<const FrameClassifier> SortEngine::makeClassifier(const Run &run, const SortChoices &choices) const
{
    auto local = m_seams.makeLocalClassifier();
    if (choices.modelTier != ModelTier::cloud) {
        return local;
    }
    CloudSettings cloud = choices.cloudSettings;
    if (cloud.apiKey.isEmpty()) {
        cloud.apiKey = m_seams.awaitCloudKey(run.stop);
    }
    // Without a key the cloud can't be asked, and a sort is worth more than a message about it.
    return cloud.apiKey.isEmpty() ? local : m_seams.makeCloudClassifier(cloud, std::move(local));
}

void SortEngine::cancelTask()
{
    m_tasks.cancel();
    m_copyHistory.setProgress(std::nullopt);
    m_looksForFootage = false;
    m_exportsOnceFound = false;
}

SortEngine::Copying::Copying(SortEngine &engine)
    : m_count(engine.m_tasks, [&engine](int change) { engine.countCopies(change); })
{}

void SortEngine::countCopies(int change)
{
    const bool wasCopying = isCopying();
    m_copies += change;
    if (wasCopying != isCopying()) {
        Q_EMIT isCopyingChanged();
    }
}

void SortEngine::addCardNote(const QString &note)
{
    m_cardNote += m_cardNote.isEmpty() ? note : u'\n' + note;
    Q_EMIT cardNoteChanged();
}

void SortEngine::dismissCardNote()
{
    if (!m_cardNote.isEmpty()) {
        m_cardNote.clear();
        Q_EMIT cardNoteChanged();
    }
}

void SortEngine::clearClips()
{
    m_lacksThumbnails = false;
    setShoot({});
    setSelectedBin(std::nullopt);
    setProgress(0, 0);
}

void SortEngine::beginWorking(const FileUrl &folder)
{
    setFolder(folder);
    clearClips();
    m_copyHistory.adopt({});
    setStage({.kind = StageKind::working});
}

} // namespace larkspan
