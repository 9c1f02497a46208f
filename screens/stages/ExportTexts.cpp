#include "screens/stages/ExportTexts.h"

#include <algorithm>

#include "screens/engine/Wording.h"

namespace larkspan {

void ExportTexts::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::optionsChanged, this, &ExportTexts::changed);
    connect(&engine, &SortEngine::folderChanged, this, &ExportTexts::changed);
    connect(&engine, &SortEngine::clipsChanged, this, &ExportTexts::changed);
}

QString ExportTexts::title() const
{
    return tr("%1 into folders").arg(progress());
}

QString ExportTexts::progress() const
{
    const QString folder = m_engine ? m_engine->folderName() : QString();
    return Wording::of(handling() == FileHandling::move ? tr("Moving %1") : tr("Copying %1"), {folder});
}

QStringList ExportTexts::steps() const
{
    const int bins = m_engine ? m_engine->binCount() : 0;
    return {
        handling() == FileHandling::move ? tr("Moving into folders…") : tr("Copying into folders…"),
        tr("Building %1 bins…").arg(std::max(1, bins)),
        tr("Almost there…"),
    };
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
