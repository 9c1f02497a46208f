#include "classify/media/FrameSampler.h"

#include <algorithm>
#include <cmath>
#include <utility>

extern "C" {
#include <libavformat/avformat.h>
}

#include "classify/media/Decoder.h"
#include "classify/media/FrameFinder.h"
#include "classify/media/FrameScaler.h"
#include "classify/media/PictureGeometry.h"

namespace larkspan {

namespace {

constexpr int mostSamples = 1024; // far more than anyone asks for

Frames framesOf(MediaFile &file, const std::vector<double> &times, int maxDimension)
{
    const auto geometry = pictureGeometry(file);
    if (!geometry) {
        return {};
    }
    CodecPtr decoder = openDecoder(*file.video()->codecpar);
    if (!decoder) {
        return {};
    }
    const double longest = std::max(geometry->naturalSize.width(), geometry->naturalSize.height());
    FrameScaler scaler(*geometry, maxDimension);
    FrameFinder finder(file, *file.video(), std::move(decoder), longest >= 2.0 * maxDimension);
    Frames frames;
    for (const double time : times) {
        const AVFrame *frame = finder.frameAt(time);
        QImage image = frame != nullptr ? scaler.image(*frame) : QImage();
        if (!image.isNull()) {
            frames.push_back(std::move(image));
        }
    }
    return frames;
}

} // namespace

std::vector<double> sampleTimes(double duration, int count)
{
    const double length = std::isfinite(duration) ? std::max(0.5, duration) : 0.5;
    const double wanted = std::min(std::ceil(length), static_cast<double>(std::min(count, mostSamples)));
    const int n = std::max(1, static_cast<int>(wanted));
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        // The platform's clock for this: 600 ticks a second.
        times.push_back(std::round(length * (i + 0.5) / n * 600.0) / 600.0);
    }
    return times;
}

Frames sampleFrames(const MediaClip &clip, int count, double maxDimension)
{
    return sampleFramesWithin(clip, count, maxDimension, {});
}

Frames sampleFramesWithin(const MediaClip &clip, int count, double maxDimension, const MediaLimits &limits,
                          std::int64_t *bytesRead)
{
    if (!(maxDimension >= 1.0)) {
        return {};
    }
    const auto file = MediaFile::open(clip.url, MediaFile::Purpose::Sample, limits);
    if (!file) {
        return {};
    }
    const int dimension = static_cast<int>(std::min(maxDimension, static_cast<double>(largestSide)));
    Frames frames = framesOf(*file, sampleTimes(clip.duration, count), dimension);
    if (bytesRead != nullptr) {
        *bytesRead = file->bytesRead();
    }
    return frames;
}

} // namespace larkspan
