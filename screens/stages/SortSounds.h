#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// Sounds the chord when the screen goes from a running sort to its results, and at no other time.
class SortSounds : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using EngineObject::EngineObject;

private:
    void follow(SortEngine &engine) override;
    void followStage();

    SortEngine::StageKind m_stage = SortEngine::StageKind::empty;
};

} // namespace larkspan
