// The editor's operations on finished clips. Each sends one change notification and saves the project once.
#include "core/SortEngine.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "core/RoomLabel.h"

namespace larkspan {

void SortEngine::reassign(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    // A clip without a bin would be in no list and under no keyword.
    if (clip && !bin.isEmpty()) {
        edit(EditHistory::Kind::move, bin, {clip}, [&](MediaClip &moved) {
            moved.primaryBin = bin;
            settle(moved);
        });
    }
}

void SortEngine::toggleExtraBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    if (!clip || bin.isEmpty()) {
        return;
    }
    if (std::ranges::find(clip->extraBins, bin) != clip->extraBins.end()) {
        edit(EditHistory::Kind::untag, bin, {clip}, [&](MediaClip &freed) { std::erase(freed.extraBins, bin); });
    } else if (bin != clip->primaryBin) {
        edit(EditHistory::Kind::tag, bin, {clip}, [&](MediaClip &tagged) { tagged.extraBins.push_back(bin); });
    }
}

void SortEngine::setSecondBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    if (!clip) {
        return;
    }
    if (bin.isEmpty() || bin == clip->primaryBin) {
        edit(EditHistory::Kind::removeSecondBin, {}, {clip}, [](MediaClip &freed) { freed.extraBins.clear(); });
    } else {
        edit(EditHistory::Kind::setSecondBin, bin, {clip}, [&](MediaClip &tagged) { tagged.extraBins = {bin}; });
    }
}

void SortEngine::confirm(const QUuid &id)
{
    if (const ClipPtr clip = clipOf(id)) {
        edit(EditHistory::Kind::confirm, {}, {clip}, [this](MediaClip &confirmed) { settle(confirmed); });
    }
}

void SortEngine::confirmAll()
{
    std::vector<ClipPtr> clips;
    std::ranges::copy_if(m_clips, std::back_inserter(clips), [](const ClipPtr &clip) { return clip->needsReview; });
    edit(EditHistory::Kind::confirmAll, {}, clips, [this](MediaClip &confirmed) { settle(confirmed); });
}

void SortEngine::undo()
{
    if (editToUndo() != nullptr) {
        refile(m_history.undo());
    }
}

void SortEngine::redo()
{
    if (editToRedo() != nullptr) {
        refile(m_history.redo());
    }
}

const EditHistory::Edit *SortEngine::editToUndo() const
{
    return m_stage.kind == StageKind::results ? m_history.toUndo() : nullptr;
}

const EditHistory::Edit *SortEngine::editToRedo() const
{
    return m_stage.kind == StageKind::results ? m_history.toRedo() : nullptr;
}

void SortEngine::revealClip(const QUuid &id)
{
    if (const ClipPtr clip = clipOf(id)) {
        m_seams.revealFile(clip->footageURL());
    }
}

ClipPtr SortEngine::clipOf(const QUuid &id) const
{
    const auto clip = std::find_if(m_clips.begin(), m_clips.end(), [&id](const ClipPtr &c) { return c->id == id; });
    return clip == m_clips.end() ? nullptr : *clip;
}

void SortEngine::settle(MediaClip &clip)
{
    clip.needsReview = false;
    clip.reviewReason.clear();
    m_confirmedReview.insert(clip.id);
}

void SortEngine::edit(EditHistory::Kind kind, const QString &bin, const std::vector<ClipPtr> &clips,
                      const std::function<void(MediaClip &clip)> &change)
{
    auto changes = recorded(clips, [&] { std::ranges::for_each(clips, [&](const ClipPtr &clip) { change(*clip); }); });
    m_history.add({.kind = kind, .bin = bin, .changes = std::move(changes)});
    leaveReviewIfDone();
    finishEdit();
}

std::vector<EditHistory::Change> SortEngine::recorded(const std::vector<ClipPtr> &clips,
                                                      const std::function<void()> &change)
{
    const auto filingOf = [this](const MediaClip &clip) {
        return ClipFiling{.primaryBin = clip.primaryBin,
                          .extraBins = clip.extraBins,
                          .needsReview = clip.needsReview,
                          .reviewReason = clip.reviewReason,
                          .isConfirmed = m_confirmedReview.contains(clip.id)};
    };
    std::vector<EditHistory::Change> changes;
    changes.reserve(clips.size());
    for (const ClipPtr &clip : clips) {
        changes.push_back({.clip = clip->id, .before = filingOf(*clip), .after = {}});
    }
    change();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        changes[i].after = filingOf(*clips[i]);
    }
    std::erase_if(changes, [](const EditHistory::Change &made) { return made.before == made.after; });
    return changes;
}

void SortEngine::refile(const EditHistory::Filings &filings)
{
    const std::vector<ClipPtr> shownBefore = clipsInBin(m_selectedBin.value_or(QString()));
    std::map<QUuid, ClipPtr> clips; // Confirm All may have changed every one
    std::ranges::transform(filings, std::inserter(clips, clips.end()),
                           [](const auto &filing) { return std::pair(filing.first, ClipPtr()); });
    for (const ClipPtr &clip : m_clips) {
        if (const auto wanted = clips.find(clip->id); wanted != clips.end()) {
            wanted->second = clip;
        }
    }
    std::vector<ClipPtr> refiled;
    bool isReviewJoined = false;
    for (const auto &[id, filing] : filings) {
        const ClipPtr &clip = clips.at(id);
        isReviewJoined |= filing.needsReview && !clip->needsReview;
        clip->primaryBin = filing.primaryBin;
        clip->extraBins = filing.extraBins;
        clip->needsReview = filing.needsReview;
        clip->reviewReason = filing.reviewReason;
        if (filing.isConfirmed) {
            m_confirmedReview.insert(id);
        } else {
            m_confirmedReview.erase(id);
        }
        refiled.push_back(clip);
    }
    showRefiled(refiled, shownBefore, isReviewJoined);
    finishEdit();
}

void SortEngine::showRefiled(const std::vector<ClipPtr> &refiled, const std::vector<ClipPtr> &shownBefore,
                             bool isReviewJoined)
{
    const std::set<ClipPtr> changed(refiled.begin(), refiled.end());
    const auto holdsOne = [&](const std::vector<ClipPtr> &clips) {
        return std::ranges::any_of(clips, [&](const ClipPtr &clip) { return changed.contains(clip); });
    };
    const std::vector<ClipPtr> shown = clipsInBin(m_selectedBin.value_or(QString()));
    if (isReviewJoined) {
        setSelectedBin(reviewKey());
    } else if (shown.empty() || !(holdsOne(shown) || holdsOne(shownBefore))) {
        setSelectedBin(refiled.front()->primaryBin);
    }
    if (!holdsOne({m_previewClip})) {
        closePreview(); // it would cover the change
    }
}

void SortEngine::finishEdit()
{
    Q_EMIT clipsChanged();
    Q_EMIT editsChanged();
    saveCurrentProject();
}

void SortEngine::leaveReviewIfDone()
{
    if (m_selectedBin == reviewKey() && reviewCount() == 0) {
        selectFirstBin();
    }
}

} // namespace larkspan
