#include "design/SurfaceMath.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// A place along one side of the card as a share of it, 0 to 1. An empty side counts as one point long.
double part(double place, double length)
{
    return std::clamp(place / std::max(1.0, length), 0.0, 1.0);
}

} // namespace

QPointF spotlightCentre(std::optional<QPointF> pointer, QSizeF card)
{
    const QPointF place = pointer.value_or(QPointF(card.width() / 2, card.height() / 2));
    return {part(place.x(), card.width()), part(place.y(), card.height())};
}

double spotlightRadius(QSizeF card)
{
    constexpr double reach = 0.62;
    return reach * std::max({card.width(), card.height(), 1.0});
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto between = [share](float a, float b) { return std::lerp(a, b, static_cast<float>(share)); };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

QString elapsedText(std::chrono::duration<double> elapsed)
{
    constexpr double minute = 60.0;
    const double seconds = std::max(0.0, elapsed.count());
    if (seconds < minute) {
        return u"%1s"_s.arg(seconds, 0, 'f', 1);
    }
    return u"%1m %2s"_s.arg(std::floor(seconds / minute), 0, 'f', 0).arg(std::fmod(seconds, minute), 0, 'f', 1);
}

} // namespace larkspan
