#include "screens/stages/SortSounds.h"

#include <utility>

#include "sound/SoundEngine.h"

namespace larkspan {

void SortSounds::follow(SortEngine &engine)
{
    m_stage = engine.stage().kind;
    connect(&engine, &SortEngine::stageChanged, this, &SortSounds::followStage);
}

void SortSounds::followStage()
{
    using enum SortEngine::StageKind;
    const auto before = std::exchange(m_stage, m_engine->stage().kind);
    if (before == working && m_stage == results) {
        SoundEngine::shared().play(SoundCue::resultsChord());
    }
}

} // namespace larkspan
