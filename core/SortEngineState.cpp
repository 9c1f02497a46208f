// The values that the screens read from the engine, and the plain setters.
#include "core/SortEngine.h"

#include <algorithm>

#include <QtCore/QHash>

#include "core/ClipOrder.h"
#include "core/RoomLabel.h"
#include "core/SortSettings.h"

namespace larkspan {

std::size_t qHash(const BinCount &row, std::size_t seed) noexcept
{
    return qHashMulti(seed, row.bin, row.count);
}

double SortEngine::progress() const
{
    return m_total < 1 ? 0.0 : static_cast<double>(m_done) / m_total;
}

QString SortEngine::folderName() const
{
    return m_folder ? m_folder->lastPathComponent() : QString();
}

QString SortEngine::displayName() const
{
    return m_projectName.isEmpty() ? folderName() : m_projectName;
}

int SortEngine::verticalCount() const
{
    return static_cast<int>(
        std::count_if(m_clips.begin(), m_clips.end(), [](const ClipPtr &clip) { return clip->isVertical(); }));
}

int SortEngine::reviewCount() const
{
    return static_cast<int>(
        std::count_if(m_clips.begin(), m_clips.end(), [this](const ClipPtr &clip) { return isUnderReview(*clip); }));
}

bool SortEngine::isUnderReview(const MediaClip &clip) const
{
    return clip.needsReview && !m_confirmedReview.contains(clip.id);
}

std::vector<BinCount> SortEngine::binCounts() const
{
    QHash<QString, int> counts;
    for (const ClipPtr &clip : m_clips) {
        clip->forEachBin([&counts](const QString &bin) { ++counts[bin]; });
    }
    std::vector<BinCount> rows;
    rows.reserve(static_cast<std::size_t>(counts.size()));
    for (auto bin = counts.cbegin(); bin != counts.cend(); ++bin) {
        rows.push_back({bin.key(), bin.value()});
    }
    std::ranges::sort(rows, [](const BinCount &a, const BinCount &b) {
        return a.count != b.count ? a.count > b.count : a.bin < b.bin;
    });
    return rows;
}

std::vector<QString> SortEngine::usedBins() const
{
    const auto counts = binCounts();
    std::vector<QString> bins(counts.size());
    std::ranges::transform(counts, bins.begin(), &BinCount::bin);
    std::ranges::sort(bins);
    return bins;
}

std::vector<QString> SortEngine::binChoices() const
{
    const std::vector<QString> used = usedBins();
    std::set<QString> bins(used.begin(), used.end());
    for (const RoomLabel &label : RoomLabel::all()) {
        bins.insert(label.name);
    }
    bins.insert(unsortedBin());
    return {bins.begin(), bins.end()};
}

std::vector<ClipPtr> SortEngine::clipsInBin(const QString &bin) const
{
    std::vector<ClipPtr> clips;
    std::copy_if(m_clips.begin(), m_clips.end(), std::back_inserter(clips), [&](const ClipPtr &clip) {
        if (bin == reviewKey()) {
            return isUnderReview(*clip);
        }
        return clip->isIn(bin);
    });
    sortByDate(clips);
    return clips;
}

void SortEngine::adoptSettings(SettingsStore &store)
{
    m_options = loadSortOptions(store);
    m_modelTier = loadModelTier(store);
    m_target = loadDefaultNLE(store);
    m_importRoot = loadImportRoot(store);
    m_recents = loadRecents(store);
    connect(this, &SortEngine::optionsChanged, this, [this, &store] { saveSortOptions(store, m_options); });
    connect(this, &SortEngine::modelTierChanged, this, [this, &store] { saveModelTier(store, m_modelTier); });
    connect(this, &SortEngine::targetChanged, this, [this, &store] { saveDefaultNLE(store, m_target); });
    connect(this, &SortEngine::importRootChanged, this, [this, &store] { saveImportRoot(store, m_importRoot); });
    connect(this, &SortEngine::recentsChanged, this, [this, &store] { storeRecents(store, m_recents); });
}

void SortEngine::setStage(Stage stage)
{
    if (m_stage != stage) {
        m_stage = std::move(stage);
        Q_EMIT stageChanged();
    }
}

void SortEngine::setProgress(int done, int total)
{
    if (m_done != done || m_total != total) {
        m_done = done;
        m_total = total;
        Q_EMIT progressChanged();
    }
}

void SortEngine::setClips(std::vector<ClipPtr> clips)
{
    m_clips = std::move(clips);
    m_history.clear();
    Q_EMIT clipsChanged();
    Q_EMIT editsChanged();
}

void SortEngine::setFolder(std::optional<FileUrl> folder)
{
    m_folder = std::move(folder);
    Q_EMIT folderChanged();
}

void SortEngine::setSelectedBin(std::optional<QString> bin)
{
    if (m_selectedBin != bin) {
        m_selectedBin = std::move(bin);
        Q_EMIT selectedBinChanged();
    }
}

void SortEngine::setPreviewClip(ClipPtr clip)
{
    if (m_previewClip != clip) {
        m_previewClip = std::move(clip);
        Q_EMIT previewClipChanged();
    }
}

void SortEngine::setTarget(NLE target)
{
    if (m_target != target) {
        m_target = target;
        Q_EMIT targetChanged();
    }
}

void SortEngine::setModelTier(ModelTier tier)
{
    if (m_modelTier != tier) {
        m_modelTier = tier;
        Q_EMIT modelTierChanged();
    }
}

void SortEngine::setOptions(const SortOptions &options)
{
    if (m_options != options) {
        m_options = options;
        Q_EMIT optionsChanged();
    }
}

void SortEngine::setImportRoot(std::optional<FileUrl> root)
{
    if (m_importRoot != root) {
        m_importRoot = std::move(root);
        Q_EMIT importRootChanged();
    }
}

} // namespace larkspan
