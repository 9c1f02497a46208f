// The editor's operations on finished clips. Each sends one change notification and saves the project once.
#include "core/SortEngine.h"

#include <algorithm>

#include "core/RoomLabel.h"

namespace larkspan {

void SortEngine::reassign(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    // A clip without a bin would be in no list and under no keyword.
    if (clip && !bin.isEmpty()) {
        clip->primaryBin = bin;
        settle(*clip);
        finishEdit();
    }
}

void SortEngine::toggleExtraBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    if (!clip || bin.isEmpty()) {
        return;
    }
    const bool wasTagged = std::erase(clip->extraBins, bin) > 0;
    if (!wasTagged) {
        if (bin == clip->primaryBin) {
            return;
        }
        clip->extraBins.push_back(bin);
    }
    Q_EMIT clipsChanged();
    saveCurrentProject();
}

void SortEngine::setSecondBin(const QUuid &id, const QString &bin)
{
    const ClipPtr clip = clipOf(id);
    if (!clip) {
        return;
    }
    clip->extraBins.clear();
    if (!bin.isEmpty() && bin != clip->primaryBin) {
        clip->extraBins.push_back(bin);
    }
    Q_EMIT clipsChanged();
    saveCurrentProject();
}

void SortEngine::confirm(const QUuid &id)
{
    if (const ClipPtr clip = clipOf(id)) {
        settle(*clip);
        finishEdit();
    }
}

void SortEngine::confirmAll()
{
    for (const ClipPtr &clip : m_clips) {
        if (clip->needsReview) {
            settle(*clip);
        }
    }
    finishEdit();
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

void SortEngine::finishEdit()
{
    leaveReviewIfDone();
    Q_EMIT clipsChanged();
    saveCurrentProject();
}

void SortEngine::leaveReviewIfDone()
{
    if (m_selectedBin == reviewKey() && reviewCount() == 0) {
        selectFirstBin();
    }
}

} // namespace larkspan
