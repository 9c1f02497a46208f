#pragma once

#include <QtQml/qqmlregistration.h>

#include "core/copies/CopyHistory.h"

namespace larkspan {

// The copies of a shoot as QML sees them. core doesn't know QML, so they are registered from here.
struct CopyHistoryForeign
{
    Q_GADGET
    QML_FOREIGN(larkspan::CopyHistory)
    QML_NAMED_ELEMENT(CopyHistory)
    QML_UNCREATABLE("The engine has one.")
};

} // namespace larkspan
