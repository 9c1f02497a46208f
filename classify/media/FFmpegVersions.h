#pragma once

// Names that differ between FFmpeg 5 of Debian 12 and FFmpeg 7 of Debian 13.

#include <cstdint>
#include <span>

#include "classify/media/FFmpegLibraries.h"

namespace larkspan {

// In ticks of the stream's time base; 0 if it isn't known.
inline std::int64_t durationOf(const AVFrame &frame)
{
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

// The bytes of the stream's display matrix; empty if it has none. The stream owns them.
inline std::span<const std::uint8_t> displayMatrixOf(const AVStream &stream)
{
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
    const AVPacketSideData *data = ffmpeg().sideData(stream.codecpar->coded_side_data,
                                                     stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return data ? std::span<const std::uint8_t>(data->data, data->size) : std::span<const std::uint8_t>();
#else
    size_t size = 0;
    const std::uint8_t *data = ffmpeg().sideData(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    return {data, data ? size : 0};
#endif
}

} // namespace larkspan
