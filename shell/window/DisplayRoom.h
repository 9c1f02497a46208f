#pragma once

#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The room that there is for a window that opens now. Main thread.
class DisplayRoom : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // Returns the room on the primary display, in points, without the desktop's own. Not a property: a window that is
    // open keeps its size.
    Q_INVOKABLE static QSizeF now();
};

} // namespace larkspan
