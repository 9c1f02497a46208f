#include "core/clips/MediaClip.h"

#include <cmath>

namespace larkspan {

std::vector<QString> MediaClip::bins() const
{
    std::vector<QString> result;
    result.reserve(1 + extraBins.size());
    forEachBin([&result](const QString &bin) { result.push_back(bin); });
    return result;
}

bool MediaClip::isIn(const QString &bin) const
{
    return !bin.isEmpty() &&
           (primaryBin == bin || std::find(extraBins.begin(), extraBins.end(), bin) != extraBins.end());
}

std::int64_t MediaClip::durationTicks() const
{
    const auto value = static_cast<double>(std::max<std::int64_t>(frameDurationValue, 1));
    const double exactFrames = std::round(duration * (frameDurationScale / value));
    // A broken header may claim any length: what no number of ticks could hold is cut there.
    constexpr double mostTicks = 9.0e18;
    const double frames =
        std::isfinite(exactFrames) ? std::clamp(exactFrames, 1.0, std::max(mostTicks / value, 1.0)) : 1.0;
    return static_cast<std::int64_t>(frames) * frameDurationValue;
}

QString MediaClip::rationalDuration() const
{
    return QStringLiteral("%1/%2s").arg(durationTicks()).arg(frameDurationScale);
}

FileUrl MediaClip::footageURL() const
{
    std::error_code unreadable; // taken for gone
    return destinationURL && !std::filesystem::exists(sourceURL().path(), unreadable) ? *destinationURL : sourceURL();
}

bool MediaClip::isFootageGone() const
{
    std::error_code unreachable; // counts as gone
    return !std::filesystem::exists(footageURL().path(), unreachable);
}

} // namespace larkspan
