#pragma once

#include <QtQml/qqmlregistration.h>

#include "output/VolumeWatcher.h"

namespace larkspan {

// The watcher as QML sees it. output doesn't know QML, so it is registered from here.
struct VolumeWatcherForeign
{
    Q_GADGET
    QML_FOREIGN(larkspan::VolumeWatcher)
    QML_NAMED_ELEMENT(VolumeWatcher)
    QML_UNCREATABLE("The program has one watcher and hands it to its window.")
};

} // namespace larkspan
