#include "screens/ExportTexts.h"

namespace larkspan {

void ExportTexts::setEngine(SortEngine *engine)
{
    if (m_engine == engine) {
        return;
    }
    if (m_engine) {
        m_engine->disconnect(this);
    }
    m_engine = engine;
    if (m_engine) {
        connect(m_engine, &SortEngine::optionsChanged, this, &ExportTexts::changed);
        connect(m_engine, &SortEngine::folderChanged, this, &ExportTexts::changed);
        connect(m_engine, &SortEngine::clipsChanged, this, &ExportTexts::changed);
    }
    Q_EMIT changed();
}

QString ExportTexts::title() const
{
    return tr("%1 into folders").arg(progress());
}

QString ExportTexts::progress() const
{
    const QString folder = m_engine ? m_engine->folderName() : QString();
    return (handling() == FileHandling::move ? tr("Moving %1") : tr("Copying %1")).arg(folder);
}

QString ExportTexts::promise() const
{
    return handling() == FileHandling::move ? tr("Originals are only deleted once every copy verifies clean.")
                                            : tr("Originals are left exactly where they are.");
}

QString ExportTexts::outcome() const
{
    const int clips = m_engine ? m_engine->clipCount() : 0;
    const int bins = m_engine ? m_engine->binCount() : 0;
    switch (handling()) {
    case FileHandling::move:
        return tr("Moved %1 clips into %2 folders.").arg(clips).arg(bins);
    case FileHandling::copy:
        return tr("Copied %1 clips into %2 folders. Your originals are untouched.").arg(clips).arg(bins);
    case FileHandling::inPlace:
        break;
    }
    return tr("Your footage was not moved or copied.");
}

FileHandling ExportTexts::handling() const
{
    return m_engine ? m_engine->options().fileHandling : FileHandling::inPlace;
}

} // namespace larkspan
