#include "tests/support/Motion.h"

#include <algorithm>

#define emit // which we otherwise don't use, and this header does
#include <QtCore/private/qabstractanimation_p.h>
#undef emit

#include "tests/support/WaitUntil.h"

namespace larkspan::test {

int runningAnimations()
{
    return QUnifiedTimer::instance()->runningAnimationCount();
}

int movingAnimations(const QObject &root)
{
    const QObjectList objects = root.findChildren<QObject *>();
    const auto timers = std::ranges::count_if(objects, [](const QObject *object) {
        return object->inherits("QQmlTimer") && object->property("running").toBool();
    });
    return runningAnimations() - static_cast<int>(timers);
}

bool comesToRest()
{
    return waitUntil([] { return runningAnimations() == 0; });
}

FrameCount::FrameCount(QQuickWindow &window)
    : m_connection(QObject::connect(
          &window, &QQuickWindow::frameSwapped, &window, [this] { ++m_drawn; }, Qt::DirectConnection))
{}

bool FrameCount::keepComing() const
{
    constexpr int few = 4;
    const int before = m_drawn;
    return waitUntil([&] { return m_drawn >= before + few; });
}

} // namespace larkspan::test
