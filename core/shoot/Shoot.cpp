#include "core/shoot/Shoot.h"

#include <algorithm>
#include <iterator>

#include "core/bins/RoomLabel.h"
#include "core/bins/RoomSplitting.h"
#include "core/clips/ClipOrder.h"

namespace larkspan {

std::size_t qHash(const BinCount &row, std::size_t seed) noexcept
{
    return qHashMulti(seed, row.bin, row.count);
}

Shoot::Shoot(std::vector<ClipPtr> clips)
{
    sortByDate(clips);
    append(clips);
}

void Shoot::append(std::span<const ClipPtr> clips)
{
    m_clips.insert(m_clips.end(), clips.begin(), clips.end());
    for (const ClipPtr &clip : clips) {
        m_byId.insert(clip->id, clip);
        count(*clip, 1);
    }
}

void Shoot::arrange(bool splitsRepeatedRooms)
{
    sortByDate(m_clips);
    if (splitsRepeatedRooms) {
        splitRepeatedRooms(m_clips);
        m_binCounts.clear();
        m_reviewCount = 0;
        std::ranges::for_each(m_clips, [this](const ClipPtr &clip) { count(*clip, 1); });
    }
    m_history.clear();
}

int Shoot::verticalCount() const
{
    return static_cast<int>(std::ranges::count_if(m_clips, [](const ClipPtr &clip) { return clip->isVertical(); }));
}

std::vector<BinCount> Shoot::binCounts() const
{
    std::vector<BinCount> rows;
    rows.reserve(static_cast<std::size_t>(m_binCounts.size()));
    for (auto bin = m_binCounts.cbegin(); bin != m_binCounts.cend(); ++bin) {
        rows.push_back({bin.key(), bin.value()});
    }
    std::ranges::sort(rows, [](const BinCount &a, const BinCount &b) {
        return a.count != b.count ? a.count > b.count : a.bin < b.bin;
    });
    return rows;
}

std::vector<QString> Shoot::usedBins() const
{
    const auto counts = binCounts();
    std::vector<QString> bins(counts.size());
    std::ranges::transform(counts, bins.begin(), &BinCount::bin);
    std::ranges::sort(bins);
    return bins;
}

std::vector<QString> Shoot::binChoices() const
{
    const std::vector<QString> used = usedBins();
    std::set<QString> bins(used.begin(), used.end());
    for (const RoomLabel &label : RoomLabel::all()) {
        bins.insert(label.name);
    }
    bins.insert(unsortedBin());
    return {bins.begin(), bins.end()};
}

std::vector<ClipPtr> Shoot::clipsInBin(const QString &bin) const
{
    std::vector<ClipPtr> clips;
    std::ranges::copy_if(m_clips, std::back_inserter(clips), [&](const ClipPtr &clip) {
        return bin == reviewKey() ? isUnderReview(*clip) : clip->isIn(bin);
    });
    sortByDate(clips);
    return clips;
}

std::optional<QString> Shoot::firstBin() const
{
    if (reviewCount() > 0) {
        return reviewKey();
    }
    const std::vector<BinCount> counts = binCounts();
    return counts.empty() ? std::nullopt : std::optional(counts.front().bin);
}

bool Shoot::isUnderReview(const MediaClip &clip) const
{
    return clip.needsReview && !m_confirmedReview.contains(clip.id);
}

bool Shoot::reassign(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = find(id);
    if (!clip || bin.isEmpty()) { // a clip without a bin would be in no list and under no keyword
        return false;
    }
    edit(EditHistory::Kind::move, bin, {clip}, [&](MediaClip &moved) {
        moved.primaryBin = bin;
        settle(moved);
    });
    return true;
}

bool Shoot::toggleExtraBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = find(id);
    if (!clip || bin.isEmpty()) {
        return false;
    }
    if (std::ranges::find(clip->extraBins, bin) != clip->extraBins.end()) {
        edit(EditHistory::Kind::untag, bin, {clip}, [&](MediaClip &freed) { std::erase(freed.extraBins, bin); });
        return true;
    }
    if (bin == clip->primaryBin) {
        return false;
    }
    edit(EditHistory::Kind::tag, bin, {clip}, [&](MediaClip &tagged) { tagged.extraBins.push_back(bin); });
    return true;
}

bool Shoot::setSecondBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = find(id);
    if (!clip) {
        return false;
    }
    if (bin.isEmpty() || bin == clip->primaryBin) {
        edit(EditHistory::Kind::removeSecondBin, {}, {clip}, [](MediaClip &freed) { freed.extraBins.clear(); });
    } else {
        edit(EditHistory::Kind::setSecondBin, bin, {clip}, [&](MediaClip &tagged) { tagged.extraBins = {bin}; });
    }
    return true;
}

bool Shoot::confirm(const QUuid &id)
{
    const ClipPtr clip = find(id);
    if (!clip) {
        return false;
    }
    edit(EditHistory::Kind::confirm, {}, {clip}, [this](MediaClip &confirmed) { settle(confirmed); });
    return true;
}

void Shoot::confirmAll()
{
    std::vector<ClipPtr> clips;
    std::ranges::copy_if(m_clips, std::back_inserter(clips), [](const ClipPtr &clip) { return clip->needsReview; });
    edit(EditHistory::Kind::confirmAll, {}, clips, [this](MediaClip &confirmed) { settle(confirmed); });
}

std::map<QString, QString> Shoot::closeGapsInBins()
{
    std::map<QString, QString> renamed;
    const auto changes = recorded(m_clips, [&] { renamed = renumberSplitBins(m_clips); });
    m_history.amend(changes, renamed);
    return renamed;
}

void Shoot::count(const MediaClip &clip, int by)
{
    clip.forEachBin([&](const QString &bin) {
        int &clips = m_binCounts[bin];
        clips += by;
        if (clips == 0) {
            m_binCounts.remove(bin);
        }
    });
    m_reviewCount += isUnderReview(clip) ? by : 0;
}

void Shoot::settle(MediaClip &clip)
{
    clip.needsReview = false;
    clip.reviewReason.clear();
    m_confirmedReview.insert(clip.id);
}

ClipFiling Shoot::filingOf(const MediaClip &clip) const
{
    return {.primaryBin = clip.primaryBin,
            .extraBins = clip.extraBins,
            .needsReview = clip.needsReview,
            .reviewReason = clip.reviewReason,
            .isConfirmed = m_confirmedReview.contains(clip.id)};
}

void Shoot::edit(EditHistory::Kind kind, const QString &bin, const std::vector<ClipPtr> &clips,
                 const std::function<void(MediaClip &clip)> &change)
{
    auto changes = recorded(clips, [&] { std::ranges::for_each(clips, [&](const ClipPtr &clip) { change(*clip); }); });
    m_history.add({.kind = kind, .bin = bin, .changes = std::move(changes)});
}

std::vector<EditHistory::Change> Shoot::recorded(const std::vector<ClipPtr> &clips, const std::function<void()> &change)
{
    std::vector<EditHistory::Change> changes;
    changes.reserve(clips.size());
    for (const ClipPtr &clip : clips) {
        changes.push_back({.clip = clip->id, .before = filingOf(*clip), .after = {}});
        count(*clip, -1);
    }
    change();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        changes[i].after = filingOf(*clips[i]);
        count(*clips[i], 1);
    }
    std::erase_if(changes, [](const EditHistory::Change &made) { return made.before == made.after; });
    return changes;
}

Shoot::Refiled Shoot::refile(const EditHistory::Filings &filings)
{
    Refiled refiled;
    for (const auto &[id, filing] : filings) {
        const ClipPtr clip = find(id);
        refiled.isReviewJoined |= filing.needsReview && !clip->needsReview;
        count(*clip, -1);
        clip->primaryBin = filing.primaryBin;
        clip->extraBins = filing.extraBins;
        clip->needsReview = filing.needsReview;
        clip->reviewReason = filing.reviewReason;
        if (filing.isConfirmed) {
            m_confirmedReview.insert(id);
        } else {
            m_confirmedReview.erase(id);
        }
        count(*clip, 1);
        refiled.clips.push_back(clip);
    }
    return refiled;
}

} // namespace larkspan
