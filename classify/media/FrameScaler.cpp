#include "classify/media/FrameScaler.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "classify/media/Decoder.h"
#include "classify/media/FFmpegLibraries.h"
#include "classify/media/MediaFile.h"
#include "classify/media/ToneMap.h"

namespace larkspan {

namespace {

QSize sizeWithin(QSizeF size, int maxDimension)
{
    const double scale = std::min(1.0, maxDimension / std::max(size.width(), size.height()));
    return {std::max(1, static_cast<int>(std::lround(size.width() * scale))),
            std::max(1, static_cast<int>(std::lround(size.height() * scale)))};
}

std::optional<LightCurve> lightCurve(const AVFrame &frame)
{
    switch (frame.color_trc) {
    case AVCOL_TRC_SMPTE2084:
        return LightCurve::Pq;
    case AVCOL_TRC_ARIB_STD_B67:
        return LightCurve::Hlg;
    default:
        return std::nullopt;
    }
}

// The matrix between YUV and RGB; where the file doesn't say, what its size makes likely.
int matrixOf(const AVFrame &frame)
{
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
        return SWS_CS_ITU709;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return SWS_CS_BT2020;
    case AVCOL_SPC_SMPTE170M:
    case AVCOL_SPC_BT470BG:
        return SWS_CS_ITU601;
    case AVCOL_SPC_SMPTE240M:
        return SWS_CS_SMPTE240M;
    case AVCOL_SPC_FCC:
        return SWS_CS_FCC;
    default:
        if (lightCurve(frame)) {
            return SWS_CS_BT2020;
        }
        return frame.width >= 1280 || frame.height > 576 ? SWS_CS_ITU709 : SWS_CS_ITU601;
    }
}

bool isFullRange(const AVFrame &frame)
{
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

// Writes each pixel of the small picture where the turn puts it.
template <typename PixelAt>
QImage turned(QSize size, const QuarterTurn &turn, PixelAt pixelAt)
{
    const bool swaps = turn.swapsSides();
    QImage image(swaps ? size.transposed() : size, QImage::Format_RGB32);
    if (image.isNull()) {
        return {};
    }
    const int originX = turn.a < 0 || turn.c < 0 ? image.width() - 1 : 0;
    const int originY = turn.b < 0 || turn.d < 0 ? image.height() - 1 : 0;
    auto *pixels = reinterpret_cast<std::uint32_t *>(image.bits());
    const auto stride = image.bytesPerLine() / 4;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int toX = originX + turn.a * x + turn.c * y;
            const int toY = originY + turn.b * x + turn.d * y;
            pixels[toY * stride + toX] = pixelAt(x, y);
        }
    }
    return image;
}

} // namespace

FrameScaler::FrameScaler(const PictureGeometry &geometry, int maxDimension)
    : m_size(sizeWithin(geometry.naturalSize, maxDimension))
    , m_turn(geometry.turn)
{}

FrameScaler::~FrameScaler()
{
    ffmpeg().freeScaler(m_context);
}

bool FrameScaler::prepare(const AVFrame &frame, bool highDynamicRange)
{
    const auto source = static_cast<AVPixelFormat>(frame.format);
    if (ffmpeg().isSupportedInput(source) == 0) {
        return false;
    }
    m_context = ffmpeg().getCachedContext(m_context, frame.width, frame.height, source, m_size.width(), m_size.height(),
                                          highDynamicRange ? AV_PIX_FMT_RGB48 : AV_PIX_FMT_RGB32, SWS_AREA, nullptr,
                                          nullptr, nullptr);
    if (m_context == nullptr) {
        return false;
    }
    constexpr int one = 1 << 16;
    ffmpeg().setColorspaceDetails(m_context, ffmpeg().getCoefficients(matrixOf(frame)), isFullRange(frame) ? 1 : 0,
                                  ffmpeg().getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
    return true;
}

QImage FrameScaler::image(const AVFrame &frame)
{
    // A stream may change its size on the way, and give a wrong one again.
    if (frame.width < 1 || frame.height < 1 || frame.data[0] == nullptr ||
        static_cast<std::int64_t>(frame.width) * frame.height > mostPixels) {
        return {};
    }
    const auto curve = lightCurve(frame);
    if (!prepare(frame, curve.has_value())) {
        return {};
    }
    // swscale writes whole vectors, past the end of a row: a frame of FFmpeg's own has room for that.
    const FramePtr small(ffmpeg().allocFrame());
    if (!small) {
        return {};
    }
    small->width = m_size.width();
    small->height = m_size.height();
    small->format = curve ? AV_PIX_FMT_RGB48 : AV_PIX_FMT_RGB32;
    if (ffmpeg().getFrameBuffer(small.get(), 0) < 0 ||
        ffmpeg().scale(m_context, frame.data, frame.linesize, 0, frame.height, small->data, small->linesize) <= 0) {
        return {};
    }
    const std::uint8_t *data = small->data[0];
    const std::ptrdiff_t stride = small->linesize[0];
    if (curve) {
        const ToneMap &map = ToneMap::of(*curve);
        return turned(m_size, m_turn, [&](int x, int y) {
            return map.map(reinterpret_cast<const std::uint16_t *>(data + y * stride) + std::ptrdiff_t{3} * x);
        });
    }
    return turned(m_size, m_turn, [&](int x, int y) {
        return reinterpret_cast<const std::uint32_t *>(data + y * stride)[x] | 0xff000000u;
    });
}

} // namespace larkspan
