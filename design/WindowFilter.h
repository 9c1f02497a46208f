#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace larkspan {

// Shows an item's owner each event of the window that the item is in, before the window receives it. Follows the item
// from window to window. Main thread.
class WindowFilter : public QObject
{
public:
    // Returns true for an event that the window is not to receive.
    using Sees = std::function<bool(QEvent &)>;

    // item: outlives the filter.
    WindowFilter(QQuickItem &item, Sees sees);

    // The item's window; null while it is in none.
    [[nodiscard]] QQuickWindow *window() const { return m_window; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watch(QQuickWindow *window);

    Sees m_sees;
    QPointer<QQuickWindow> m_window;
};

} // namespace larkspan
