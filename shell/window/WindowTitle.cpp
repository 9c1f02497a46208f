#include "shell/window/WindowTitle.h"

namespace larkspan {

void WindowTitle::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::stageChanged, this, &WindowTitle::changed);
    connect(&engine, &SortEngine::progressChanged, this, &WindowTitle::changed);
}

QString WindowTitle::text() const
{
    using Kind = SortEngine::StageKind;
    const Kind stage = m_engine ? m_engine->stage().kind : Kind::empty;
    if (m_isActive || (stage != Kind::working && stage != Kind::organizing)) {
        return tr("Larkspan");
    }
    return tr("%1% – Larkspan").arg(static_cast<int>(100 * m_engine->progress()));
}

} // namespace larkspan
