#pragma once

#include <QtCore/QPointer>
#include <QtCore/QPointF>
#include <QtGui/QKeyEvent>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickWindow>

namespace larkspan {

// Keeps one gesture from doing two things in a window. A key that is held acts once, unless it moves or writes. The
// second press of a double click doesn't reach what the first has put under the pointer. Main thread.
class InputGuard : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // A name for what is on show; any other text is another scene.
    Q_PROPERTY(QString scene MEMBER m_scene NOTIFY sceneChanged REQUIRED)
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)

public:
    using QObject::QObject;

    QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void sceneChanged();
    void windowChanged();

private:
    struct Press
    {
        quint64 time = 0; // milliseconds
        QPointF place;
        Qt::MouseButton button = Qt::NoButton;
        QString scene;
    };

    struct KeyRelease
    {
        int key = 0;
        quint64 time = 0; // milliseconds
    };

    // Returns whether a key event comes from holding a key that acts once.
    bool isHeldOn(const QKeyEvent &event);
    bool mayRepeat(int key) const;
    // Returns whether a press is the second of a double click, over another scene than the first.
    bool isMeantForBefore(const QMouseEvent &press) const;

    QPointer<QQuickWindow> m_window;
    QString m_scene;
    KeyRelease m_lastRelease;
    int m_releasedKey = 0; // whose release was passed on although it is still held; 0 for none
    Press m_lastPress;
    bool m_dropsClick = false; // until the button is let go
};

} // namespace larkspan
