#include "shell/window/InputGuard.h"

#include <utility>

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QStyleHints>
#include <QtQuick/QQuickItem>

namespace larkspan {

void InputGuard::setWindow(QQuickWindow *window)
{
    if (m_window == window) {
        return;
    }
    if (m_window) {
        m_window->removeEventFilter(this);
    }
    m_window = window;
    if (m_window) {
        m_window->installEventFilter(this);
    }
    Q_EMIT windowChanged();
}

bool InputGuard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return isHeldOn(*static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonPress: {
        const auto *press = static_cast<QMouseEvent *>(event);
        m_dropsClick = isMeantForBefore(*press);
        m_lastPress = {press->timestamp(), press->position(), press->button(), m_scene};
        return m_dropsClick;
    }
    case QEvent::MouseButtonDblClick:
        return m_dropsClick;
    case QEvent::MouseButtonRelease:
        return std::exchange(m_dropsClick, false);
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool InputGuard::isHeldOn(const QKeyEvent &event)
{
    const int key = event.key();
    if (mayRepeat(key)) {
        return false;
    }
    if (event.isAutoRepeat()) {
        return true;
    }
    if (event.type() == QEvent::KeyRelease) {
        m_lastRelease = {key, event.timestamp()};
        return std::exchange(m_releasedKey, m_releasedKey == key ? 0 : m_releasedKey) == key;
    }
    // X11 repeats a key by a release and a press with the same time. Qt doesn't mark them as repeats if the press
    // arrives after it has handled the release.
    const bool isRepeat = m_lastRelease.key == key && m_lastRelease.time == event.timestamp() && event.timestamp() != 0;
    if (isRepeat) {
        m_releasedKey = key;
    } else if (m_releasedKey == key) {
        m_releasedKey = 0;
    }
    return isRepeat;
}

bool InputGuard::mayRepeat(int key) const
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return false;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default: // may repeat only in a text field, which it writes into
        const QQuickItem *item = m_window ? m_window->activeFocusItem() : nullptr;
        return item != nullptr && item->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
    }
}

bool InputGuard::isMeantForBefore(const QMouseEvent &press) const
{
    const QStyleHints &hints = *QGuiApplication::styleHints();
    return press.button() == m_lastPress.button && m_scene != m_lastPress.scene &&
           press.timestamp() - m_lastPress.time < static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
           (press.position() - m_lastPress.place).manhattanLength() < hints.mouseDoubleClickDistance();
}

} // namespace larkspan
