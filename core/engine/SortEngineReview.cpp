// The editor's operations on finished clips. Each sends one change notification and saves the project once.
#include <algorithm>
#include <set>

#include "core/bins/RoomLabel.h"
#include "core/engine/SortEngineParts.h"

namespace larkspan {

void SortEngine::reassign(const QUuid &id, const QString &bin)
{
    if (m_shoot.reassign(id, bin)) {
        finishEdit();
    }
}

void SortEngine::toggleExtraBin(const QUuid &id, const QString &bin)
{
    if (m_shoot.toggleExtraBin(id, bin)) {
        finishEdit();
    }
}

void SortEngine::setSecondBin(const QUuid &id, const QString &bin)
{
    if (m_shoot.setSecondBin(id, bin)) {
        finishEdit();
    }
}

void SortEngine::confirm(const QUuid &id)
{
    if (m_shoot.confirm(id)) {
        finishEdit();
    }
}

void SortEngine::confirmAll()
{
    m_shoot.confirmAll();
    finishEdit();
}

void SortEngine::undo()
{
    if (editToUndo() != nullptr) {
        const std::vector<ClipPtr> shownBefore = clipsOnShow();
        showRefiled(m_shoot.undo(), shownBefore);
        saveEdit();
    }
}

void SortEngine::redo()
{
    if (editToRedo() != nullptr) {
        const std::vector<ClipPtr> shownBefore = clipsOnShow();
        showRefiled(m_shoot.redo(), shownBefore);
        saveEdit();
    }
}

const EditHistory::Edit *SortEngine::editToUndo() const
{
    return m_stage.kind == StageKind::results ? m_shoot.editToUndo() : nullptr;
}

const EditHistory::Edit *SortEngine::editToRedo() const
{
    return m_stage.kind == StageKind::results ? m_shoot.editToRedo() : nullptr;
}

void SortEngine::closeGapsInBins()
{
    const auto renamed = m_shoot.closeGapsInBins();
    if (const auto name = renamed.find(m_selectedBin.value_or(QString())); name != renamed.end()) {
        setSelectedBin(name->second);
    }
    announceClips();
}

void SortEngine::revealClip(const QUuid &id)
{
    if (const ClipPtr clip = m_shoot.find(id)) {
        m_parts->seams.revealFile(clip->footageURL());
    }
}

std::vector<ClipPtr> SortEngine::clipsOnShow() const
{
    return clipsInBin(m_selectedBin.value_or(QString()));
}

void SortEngine::showRefiled(const Shoot::Refiled &refiled, const std::vector<ClipPtr> &shownBefore)
{
    const std::set<ClipPtr> changed(refiled.clips.begin(), refiled.clips.end());
    const auto holdsOne = [&](const std::vector<ClipPtr> &clips) {
        return std::ranges::any_of(clips, [&](const ClipPtr &clip) { return changed.contains(clip); });
    };
    const std::vector<ClipPtr> shown = clipsOnShow();
    if (refiled.isReviewJoined) {
        setSelectedBin(reviewKey());
    } else if (shown.empty() || !(holdsOne(shown) || holdsOne(shownBefore))) {
        setSelectedBin(refiled.clips.front()->primaryBin);
    }
    if (!holdsOne({m_previewClip})) {
        closePreview(); // it would cover the change
    }
}

void SortEngine::finishEdit()
{
    if (m_selectedBin == reviewKey() && reviewCount() == 0) {
        setSelectedBin(m_shoot.firstBin());
    }
    saveEdit();
}

void SortEngine::saveEdit()
{
    announceClips();
    saveCurrentProject();
}

} // namespace larkspan
