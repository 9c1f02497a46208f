// The values that the screens read from the engine, and the plain setters.
#include "core/engine/SortEngineParts.h"

namespace larkspan {

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

QString SortEngine::exportSummary() const
{
    const QString name = m_folder ? folderName() : QStringLiteral("Event");
    return QStringLiteral("%1.fcpxml · %2 bins · %3 clips")
        .arg(name, QString::number(binCount()), QString::number(clipCount()));
}

CopyHistory *SortEngine::copyHistory()
{
    return &m_parts->copies.history();
}

const std::vector<UnreadableCard> &SortEngine::unreadableCards() const
{
    return m_parts->copies.unreadable();
}

void SortEngine::dismissUnreadableCards()
{
    m_parts->copies.dismissUnreadable();
}

std::vector<UnfinishedCopy> SortEngine::unfinishedCopies() const
{
    return m_parts->copies.unfinished();
}

void SortEngine::dismissUnfinishedCopies()
{
    m_parts->copies.dismissUnfinished();
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

void SortEngine::setShoot(Shoot shoot)
{
    m_shoot = std::move(shoot);
    announceClips();
}

void SortEngine::announceClips()
{
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
    if (m_settings.setTarget(target)) {
        Q_EMIT targetChanged();
    }
}

void SortEngine::setModelTier(ModelTier tier)
{
    if (m_settings.setModelTier(tier)) {
        Q_EMIT modelTierChanged();
    }
}

void SortEngine::setOptions(const SortOptions &options)
{
    if (m_settings.setOptions(options)) {
        Q_EMIT optionsChanged();
    }
}

void SortEngine::setImportRoot(std::optional<FileUrl> root)
{
    if (m_settings.setImportRoot(std::move(root))) {
        Q_EMIT importRootChanged();
    }
}

} // namespace larkspan
