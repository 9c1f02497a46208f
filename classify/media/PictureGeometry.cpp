#include "classify/media/PictureGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "classify/media/AvcAspect.h"
#include "classify/media/Decoder.h"
#include "classify/media/FFmpegVersions.h"
#include "classify/media/MediaFile.h"

namespace larkspan {

namespace {

// The 2 by 2 part of a display matrix: x' = a x + c y, y' = b x + d y.
struct Transform
{
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double d = 1.0;

    // Returns how much wider than tall a pixel becomes.
    double stretch() const { return std::hypot(a, b) / std::hypot(c, d); }
};

Transform transformOf(const AVStream &stream)
{
    const std::span<const std::uint8_t> bytes = displayMatrixOf(stream);
    std::array<std::int32_t, 9> matrix = {};
    if (bytes.size() < sizeof(matrix)) {
        return {};
    }
    std::memcpy(matrix.data(), bytes.data(), sizeof(matrix));
    constexpr double one = 65536.0;
    return {matrix[0] / one, matrix[1] / one, matrix[3] / one, matrix[4] / one};
}

double ratioOf(AVRational ratio)
{
    return ratio.num > 0 && ratio.den > 0 ? av_q2d(ratio) : 0.0;
}

// Returns the pixel aspect that only the codec's own headers have; 0 if they lack it.
double codecPixelAspect(const AVCodecParameters &parameters)
{
    if (const double aspect = ratioOf(parameters.sample_aspect_ratio); aspect > 0.0) {
        return aspect;
    }
    if (parameters.extradata == nullptr || parameters.extradata_size <= 0) {
        return 0.0;
    }
    if (parameters.codec_id == AV_CODEC_ID_H264) {
        return avcPixelAspect({parameters.extradata, static_cast<std::size_t>(parameters.extradata_size)});
    }
    if (parameters.codec_id == AV_CODEC_ID_HEVC) {
        const CodecPtr decoder = openDecoder(parameters); // reads its headers when it opens
        return decoder ? ratioOf(decoder->sample_aspect_ratio) : 0.0;
    }
    return 0.0;
}

// Returns the width of a pixel for its height; 1 if the file doesn't say.
double pixelAspect(const AVStream &stream, const Transform &transform)
{
    double aspect = ratioOf(stream.sample_aspect_ratio);
    // FFmpeg also gives a transform that stretches as an aspect; it must not count twice.
    if (std::abs(transform.stretch() - 1.0) > 0.01 && std::abs(transform.stretch() / aspect - 1.0) < 0.001) {
        aspect = 0.0;
    }
    if (aspect == 0.0) {
        aspect = codecPixelAspect(*stream.codecpar);
    }
    return aspect >= 0.1 && aspect <= 10.0 ? aspect : 1.0;
}

QuarterTurn nearestTurn(const Transform &transform)
{
    const auto sign = [](double value) { return value < 0.0 ? -1 : 1; };
    if (std::abs(transform.a) + std::abs(transform.d) >= std::abs(transform.b) + std::abs(transform.c)) {
        return {sign(transform.a), 0, 0, sign(transform.d)};
    }
    return {0, sign(transform.b), sign(transform.c), 0};
}

QSizeF through(const Transform &transform, QSizeF size)
{
    const double width = transform.a * size.width() + transform.c * size.height();
    const double height = transform.b * size.width() + transform.d * size.height();
    if (width == 0.0 || height == 0.0) {
        return size;
    }
    return {std::round(std::abs(width)), std::round(std::abs(height))};
}

} // namespace

std::optional<PictureGeometry> pictureGeometry(const MediaFile &file)
{
    const AVStream *stream = file.video();
    if (stream == nullptr) {
        return std::nullopt;
    }
    const std::int64_t width = stream->codecpar->width;
    const std::int64_t height = stream->codecpar->height;
    if (width < 1 || height < 1 || width > largestSide || height > largestSide || width * height > mostPixels) {
        return std::nullopt;
    }
    const Transform transform = transformOf(*stream);
    PictureGeometry geometry;
    const double squareWidth = std::round(static_cast<double>(width) * pixelAspect(*stream, transform));
    geometry.naturalSize = {std::max(squareWidth, 1.0), static_cast<double>(height)};
    geometry.displaySize = through(transform, geometry.naturalSize);
    geometry.turn = nearestTurn(transform);
    return geometry;
}

} // namespace larkspan
