#pragma once

#include <optional>

#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"

namespace larkspan {

// Returns the folder that a dropped item stands for: itself if it is one, otherwise the folder that it is in, so that
// dropping one clip sorts its shoot. None for an item that is no local file.
std::optional<FileUrl> shootFolder(const QUrl &dropped);

// Takes the drop of a shoot on the landing.
class ShootDrop : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using EngineObject::EngineObject;

    // Returns whether there is anything to take.
    Q_INVOKABLE bool accepts(const QList<QUrl> &urls) const { return !urls.isEmpty(); }
    // Sorts the first item's folder; the other items are ignored, and so is one that is no local file.
    Q_INVOKABLE void take(const QList<QUrl> &urls);
};

} // namespace larkspan
