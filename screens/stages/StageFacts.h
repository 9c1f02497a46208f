#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/engine/SortEngine.h"

namespace larkspan {

// The program's behaviour at one stage of the tool.
struct StageFacts
{
    const char *view = ""; // the QML file that is on the screen, beside BinnacleView.qml
    bool isBusy = false;   // a sort or a copy is under way, with progress to show
    bool hasShoot = false; // a sorted shoot is at hand: it can be sorted again, checked and exported
};

// Returns a stage's row of the one list of all stages.
[[nodiscard]] StageFacts factsOf(SortEngine::StageKind stage);

// The same list for QML, which can't name a stage itself: the engine's names for them begin in lower case.
class Stages : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE static QString view(larkspan::SortEngine::StageKind stage);
};

} // namespace larkspan
