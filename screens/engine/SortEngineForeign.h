#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/engine/SortEngine.h"

namespace larkspan {

// The engine as QML sees it. core doesn't know QML, so it is registered from here.
struct SortEngineForeign
{
    Q_GADGET
    QML_FOREIGN(larkspan::SortEngine)
    QML_NAMED_ELEMENT(SortEngine)
    QML_UNCREATABLE("The program has one engine and hands it to its views.")
};

} // namespace larkspan
