#include "design/IntroTimeline.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QEasingCurve>
#include <QtCore/QPointF>

namespace larkspan::introTimeline {

namespace {

QEasingCurve curve(QPointF first, QPointF second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1.0, 1.0});
    return curve;
}

const QEasingCurve &houseCurve()
{
    static const QEasingCurve house = curve({0.2, 0.8}, {0.2, 1.0});
    return house;
}

// Still accelerating when it ends: the strip is caught by the blade while it moves.
const QEasingCurve &scrubCurve()
{
    static const QEasingCurve scrub = curve({0.62, 0.04}, {0.88, 0.44});
    return scrub;
}

const QEasingCurve &bladeCurve()
{
    static const QEasingCurve blade = curve({0.3, 0.9}, {0.2, 1.0});
    return blade;
}

// Goes past its end and settles, like a spring.
const QEasingCurve &springCurve()
{
    static const QEasingCurve spring = curve({0.34, 1.56}, {0.64, 1.0});
    return spring;
}

// The share of a change that has happened at a time, from 0; above 1 where the curve overshoots.
double share(double seconds, double begin, double duration, const QEasingCurve &along)
{
    return along.valueForProgress(std::clamp((seconds - begin) / duration, 0.0, 1.0));
}

} // namespace

IntroLook lookAt(double seconds)
{
    const double entering = share(seconds, stripIn, 0.52, houseCurve());
    const double parting = share(seconds, halvesOpen, 0.56, houseCurve());
    const double icon = share(seconds, iconIn, 0.56, springCurve());
    return {
        .stripOpacity = entering * (1.0 - parting),
        .stripScale = std::lerp(0.7, 1.0, entering),
        .scrub = -176.0 * share(seconds, scrub, 1.5, scrubCurve()),
        .halfShift = 216.0 * parting,
        .halfAngle = 7.0 * parting,
        .bladeOpacity = seconds < blade ? 0.0 : 1.0 - share(seconds, bladeGone, 0.3, houseCurve()),
        .bladeY = std::lerp(-210.0, 60.0, share(seconds, blade, 0.62, bladeCurve())),
        .iconOpacity = std::clamp(icon, 0.0, 1.0),
        .iconScale = std::lerp(0.55, 1.0, icon),
        .opacity = 1.0 - share(seconds, fadingOut, 0.65, houseCurve()),
    };
}

} // namespace larkspan::introTimeline
