#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// The look of the intro at one moment. Lengths in points, angles in degrees.
struct IntroLook
{
    Q_GADGET
    QML_VALUE_TYPE(introLook)
    Q_PROPERTY(double stripOpacity MEMBER stripOpacity)
    Q_PROPERTY(double stripScale MEMBER stripScale)
    Q_PROPERTY(double scrub MEMBER scrub)
    Q_PROPERTY(double halfShift MEMBER halfShift)
    Q_PROPERTY(double halfAngle MEMBER halfAngle)
    Q_PROPERTY(double bladeOpacity MEMBER bladeOpacity)
    Q_PROPERTY(double bladeY MEMBER bladeY)
    Q_PROPERTY(double iconOpacity MEMBER iconOpacity)
    Q_PROPERTY(double iconScale MEMBER iconScale)
    Q_PROPERTY(double opacity MEMBER opacity)

public:
    double stripOpacity = 0.0; // entering and leaving together
    double stripScale = 0.7;
    double scrub = 0.0;     // the strip's way to the left, negative
    double halfShift = 0.0; // of the right half; the left one goes the other way
    double halfAngle = 0.0; // likewise
    double bladeOpacity = 0.0;
    double bladeY = -210.0; // from its middle to the window's
    double iconOpacity = 0.0;
    double iconScale = 0.55;
    double opacity = 1.0; // of the whole

    friend bool operator==(const IntroLook &, const IntroLook &) = default;
};

// The intro's fixed sequence. Seconds count from the moment when it appears.
namespace introTimeline {

inline constexpr double stripIn = 0.0;
inline constexpr double scrub = 0.34;
inline constexpr double blade = 1.7;
inline constexpr double bladeGone = 2.0; // it begins to fade
inline constexpr double halvesOpen = 1.98;
inline constexpr double iconIn = 2.25;
inline constexpr double chime = 2.25;
inline constexpr double fadingOut = 4.3;
inline constexpr double finish = 4.98;

[[nodiscard]] IntroLook lookAt(double seconds);

} // namespace introTimeline

} // namespace larkspan
