#include "core/clips/FeaturePrint.h"

#include <cmath>

namespace larkspan {

std::optional<float> FeaturePrint::computeDistance(const FeaturePrint &other) const
{
    if (m_values.size() != other.m_values.size()) {
        return std::nullopt;
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const double difference = double{m_values[i]} - double{other.m_values[i]};
        sum += difference * difference;
    }
    const auto distance = static_cast<float>(std::sqrt(sum));
    return std::isfinite(distance) ? std::optional(distance) : std::nullopt;
}

} // namespace larkspan
