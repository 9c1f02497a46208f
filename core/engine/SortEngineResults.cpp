// A sorted shoot on its way to another program.
#include <algorithm>

#include "core/bins/Diagnostics.h"
#include "core/engine/SortEngineParts.h"
#include "core/files/AtomicFile.h"

namespace larkspan {

void SortEngine::exportEvent()
{
    if (target() == NLE::premiere || !m_folder) {
        return;
    }
    const auto isGone = [](const ClipPtr &clip) { return clip->isFootageGone(); };
    if (m_parts->footage.isLooking() && std::ranges::any_of(clips(), isGone)) {
        m_parts->footage.exportOnceFound();
        return;
    }
    closeGapsInBins();
    m_parts->exporting.start(*m_folder);
}

std::optional<FileUrl> SortEngine::handoffFile(HandoffFormat format) const
{
    if (!m_folder) {
        return std::nullopt;
    }
    const std::filesystem::path folder =
        m_stage.event ? m_stage.event->path().parent_path() : m_parts->exporting.folderOfEvent(*m_folder).path();
    return FileUrl(folder / (m_folder->lastPathBytes() + handoffSuffix(format).toStdString()));
}

void SortEngine::chooseHandoff()
{
    m_parts->seams.chooseHandoff();
}

void SortEngine::showCopyReport()
{
    if (m_folder) {
        m_parts->copies.showReport(*m_folder);
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
        m_parts->seams.openFile(*m_stage.event);
    }
}

void SortEngine::revealEvent()
{
    if (m_stage.event) {
        m_parts->seams.revealFile(*m_stage.event);
    }
}

tl::expected<void, std::error_code> SortEngine::exportDiagnostics(const FileUrl &url) const
{
    return writeFileAtomically(url.path(), clipDiagnostics(clips()).toStdString());
}

} // namespace larkspan
