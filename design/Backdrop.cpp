#include "design/Backdrop.h"

#include <chrono>

#include <QtQuick/QQuickWindow>

#include "design/LK.h"
#include "design/SoftShapes.h"

namespace larkspan {

namespace {

double machineSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

Backdrop::Backdrop(QQuickItem *parent)
    : QQuickItem(parent)
    , m_clock(machineSeconds)
    , m_start(machineSeconds())
    , m_frames([this] { step(); })
{
    setFlag(ItemHasContents);
    connect(&LK::instance(), &LK::themeChanged, this, &QQuickItem::update);
    connect(&LK::instance(), &LK::boringModeChanged, this, &Backdrop::boringModeChanged);
}

void Backdrop::setClock(Clock clock)
{
    m_clock = std::move(clock);
    m_start = m_clock();
    update();
}

bool Backdrop::isMoving() const
{
    return m_frames.state() == QAbstractAnimation::Running;
}

bool Backdrop::canBeSeen() const
{
    return isVisible() && window() && window()->isVisible() && window()->visibility() != QWindow::Minimized;
}

void Backdrop::wake()
{
    if (canBeSeen() && !LK::instance().boringMode()) {
        m_frames.start();
    }
}

void Backdrop::visibilityChanged()
{
    if (canBeSeen()) {
        wake();
    } else {
        m_frames.stop();
    }
}

void Backdrop::step()
{
    if (!advance()) {
        m_frames.stop();
    }
    update();
}

void Backdrop::boringModeChanged()
{
    if (LK::instance().boringMode()) {
        m_frames.stop();
        beStill();
        update();
    } else {
        wake();
    }
}

double Backdrop::pixel() const
{
    return 1.0 / window()->effectiveDevicePixelRatio();
}

bool Backdrop::canDraw() const
{
    return width() > 1.0 && height() > 1.0 && canDrawSoftShapes(*window());
}

void Backdrop::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange) {
        disconnect(m_windowVisibility);
        if (value.window) {
            m_windowVisibility = connect(value.window, &QWindow::visibilityChanged, this, &Backdrop::visibilityChanged);
        }
        visibilityChanged();
    } else if (change == ItemVisibleHasChanged) {
        visibilityChanged();
    } else if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, value);
}

void Backdrop::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

} // namespace larkspan
