#include "design/WindowFilter.h"

#include <utility>

namespace larkspan {

WindowFilter::WindowFilter(QQuickItem &item, Sees sees) : m_sees(std::move(sees))
{
    connect(&item, &QQuickItem::windowChanged, this, &WindowFilter::watch);
    watch(item.window());
}

bool WindowFilter::eventFilter(QObject *, QEvent *event)
{
    return m_sees(*event);
}

void WindowFilter::watch(QQuickWindow *window)
{
    if (m_window) {
        m_window->removeEventFilter(this);
    }
    m_window = window;
    if (m_window) {
        m_window->installEventFilter(this);
    }
}

} // namespace larkspan
