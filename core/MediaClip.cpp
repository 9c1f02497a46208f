#include "core/MediaClip.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace larkspan {

std::vector<QString> MediaClip::bins() const
{
    std::vector<QString> result;
    result.reserve(1 + extraBins.size());
    const auto add = [&result](const QString &bin) {
        if (!bin.isEmpty() && std::find(result.begin(), result.end(), bin) == result.end()) {
            result.push_back(bin);
        }
    };
    add(primaryBin);
    std::for_each(extraBins.begin(), extraBins.end(), add);
    return result;
}

QString MediaClip::rationalDuration() const
{
    const auto value = std::max<std::int64_t>(frameDurationValue, 1);
    const double exactFrames =
        std::round(duration * (double{static_cast<double>(frameDurationScale)} / static_cast<double>(value)));
    // A broken header may claim any length; what would overflow is held at the largest count that doesn't.
    const double mostFrames = static_cast<double>(std::numeric_limits<std::int64_t>::max() / value / 2);
    const auto frames = static_cast<std::int64_t>(
        std::clamp(std::isfinite(exactFrames) ? exactFrames : 1.0, 1.0, std::max(mostFrames, 1.0)));
    return QStringLiteral("%1/%2s").arg(frames * frameDurationValue).arg(frameDurationScale);
}

} // namespace larkspan
