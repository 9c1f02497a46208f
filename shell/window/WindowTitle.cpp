#include "shell/window/WindowTitle.h"

#include "screens/stages/StageFacts.h"

namespace larkspan {

void WindowTitle::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::stageChanged, this, &WindowTitle::changed);
    connect(&engine, &SortEngine::progressChanged, this, &WindowTitle::changed);
}

QString WindowTitle::text() const
{
    if (m_isActive || !m_engine || !factsOf(m_engine->stage().kind).isBusy) {
        return tr("Larkspan");
    }
    return tr("%1% – Larkspan").arg(static_cast<int>(100 * m_engine->progress()));
}

} // namespace larkspan
