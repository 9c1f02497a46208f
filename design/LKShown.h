#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/WindowFilter.h"

namespace larkspan {

// Attached to an item: true while it can be seen. It and all its parents are visible then, and its window is on the
// screen and neither hidden nor minimized. Items that move by themselves do so only then:
//   running: LKShown.now
class LKShown : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("LKShown is attached to an item")
    QML_ATTACHED(larkspan::LKShown)
    Q_PROPERTY(bool now READ now NOTIFY nowChanged)

public:
    static LKShown *qmlAttachedProperties(QObject *object);

    explicit LKShown(QQuickItem *item);

    [[nodiscard]] bool now() const { return m_now; }

Q_SIGNALS:
    void nowChanged();

private:
    void see(const QEvent &event);
    void update();

    QQuickItem *m_item; // the parent
    WindowFilter m_filter;
    bool m_now = false;
};

} // namespace larkspan
