#pragma once

#include <algorithm>
#include <cmath>

#include <QtCore/QRectF>

namespace larkspan {

// Returns the probability that a network means by its number for yes or no.
[[nodiscard]] inline float probabilityOf(float logit)
{
    return 1.0f / (1.0f + std::exp(-logit));
}

// The share of two boxes' common outline that both cover, 0...1.
[[nodiscard]] inline double overlapOf(const QRectF &a, const QRectF &b)
{
    const auto shared = a & b;
    const double common = shared.width() * shared.height();
    const double covered = a.width() * a.height() + b.width() * b.height() - common;
    return covered > 0.0 ? common / covered : 0.0;
}

} // namespace larkspan
