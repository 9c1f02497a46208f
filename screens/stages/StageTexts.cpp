#include "screens/stages/StageTexts.h"

#include "screens/engine/Wording.h"
#include "screens/stages/StageFacts.h"

namespace larkspan {

using Kind = SortEngine::StageKind;

void StageTexts::follow(SortEngine &engine)
{
    m_export.setEngine(&engine);
    for (const auto signal : {&SortEngine::stageChanged, &SortEngine::folderChanged, &SortEngine::clipsChanged,
                              &SortEngine::selectedBinChanged, &SortEngine::optionsChanged}) {
        connect(&engine, signal, this, &StageTexts::changed);
    }
}

Kind StageTexts::stage() const
{
    return m_engine ? m_engine->stage().kind : Kind::empty;
}

QString StageTexts::title() const
{
    switch (stage()) {
    case Kind::working:
        return Wording::of(tr("Sorting %1"), {m_engine->folderName()});
    case Kind::results:
        return Wording::of(tr("%1 · %2 clips · %3 bins"),
                           {m_engine->folderName(), m_engine->clipCount(), m_engine->binCount()});
    case Kind::organizing:
        return m_export.title();
    case Kind::done:
        return Wording::of(tr("%1 · event created"), {m_engine->folderName()});
    case Kind::empty:
    case Kind::emptyFolder:
    case Kind::failed:
        break;
    }
    return m_toolName;
}

QString StageTexts::shapes() const
{
    if (stage() != Kind::results) {
        return {};
    }
    return tr("%1 vertical · %2 horizontal · native aspect kept")
        .arg(m_engine->verticalCount())
        .arg(m_engine->clipCount() - m_engine->verticalCount());
}

QString StageTexts::done() const
{
    return m_engine && !m_engine->eventPath().isEmpty() ? tr("Event created") : tr("Couldn't write the event");
}

QString StageTexts::unsure() const
{
    const int clips = m_engine ? m_engine->reviewCount() : 0;
    return clips == 1 ? tr("1 clip Binnacle wasn't sure about") : tr("%1 clips Binnacle wasn't sure about").arg(clips);
}

QString StageTexts::noClips() const
{
    const QString bin = m_engine ? m_engine->selectedBin().value_or(QString()) : QString();
    return bin.isEmpty() ? tr("No clips") : Wording::of(tr("No clips are left in %1"), {bin});
}

bool StageTexts::hasShoot() const
{
    return factsOf(stage()).hasShoot;
}

} // namespace larkspan
