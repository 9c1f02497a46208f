#include "classify/media/CameraTimecode.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>

#include "classify/media/FFmpegLibraries.h"
#include "classify/media/MediaFile.h"

namespace larkspan {

namespace {

constexpr int mostPackets = 64; // before the first group of pictures must have come

std::optional<Timecode> timecodeIn(const AVDictionary *metadata, AVRational rate)
{
    const AVDictionaryEntry *entry = ffmpeg().dictGet(metadata, "timecode", nullptr, 0);
    return entry != nullptr && rate.num > 0 && rate.den > 0
               ? Timecode::parsed(QString::fromUtf8(entry->value), av_q2d(rate))
               : std::nullopt;
}

// A timecode track has a rate of its own, which needn't be the picture's: 29.97 beside 59.94.
std::optional<Timecode> timecodeOfTrack(const AVFormatContext &format)
{
    for (const AVStream *stream : std::span(format.streams, format.nb_streams)) {
        if (stream->codecpar->codec_tag == MKTAG('t', 'm', 'c', 'd')) {
            if (const auto timecode = timecodeIn(stream->metadata, stream->avg_frame_rate)) {
                return timecode;
            }
        }
    }
    return std::nullopt;
}

AVRational rateOf(const AVStream &video)
{
    return video.avg_frame_rate.num > 0 ? video.avg_frame_rate : video.r_frame_rate;
}

// The time in the header of a group of pictures, 25 bits behind its start code: a drop-frame flag, hours, minutes, a
// marker, seconds and pictures.
std::optional<QString> timeOfGroup(std::span<const std::uint8_t> packet)
{
    constexpr std::array<std::uint8_t, 4> startCode{0, 0, 1, 0xB8};
    const auto found = std::ranges::search(packet, startCode);
    const std::span header(found.end(), packet.end());
    if (found.empty() || header.size() < 4) {
        return std::nullopt;
    }
    const std::uint32_t bits = static_cast<std::uint32_t>(header[0]) << 24 |
                               static_cast<std::uint32_t>(header[1]) << 16 |
                               static_cast<std::uint32_t>(header[2]) << 8 | header[3];
    const auto field = [bits](int shift, std::uint32_t mask) {
        return QString::number(bits >> shift & mask).rightJustified(2, QLatin1Char('0'));
    };
    const QLatin1Char separator(bits >> 31 != 0 ? ';' : ':');
    return field(26, 0x1F) + QLatin1Char(':') + field(20, 0x3F) + QLatin1Char(':') + field(13, 0x3F) + separator +
           field(7, 0x3F);
}

std::optional<Timecode> timecodeOfPictures(const MediaFile &file, const AVStream &video)
{
    if (video.codecpar->codec_id != AV_CODEC_ID_MPEG2VIDEO && video.codecpar->codec_id != AV_CODEC_ID_MPEG1VIDEO) {
        return std::nullopt;
    }
    const auto release = [](AVPacket *packet) { ffmpeg().freePacket(&packet); };
    const std::unique_ptr<AVPacket, decltype(release)> packet(ffmpeg().allocPacket(), release);
    for (int i = 0; packet && i < mostPackets && ffmpeg().readFrame(file.format(), packet.get()) >= 0; ++i) {
        std::optional<QString> time;
        if (packet->stream_index == video.index) {
            time = timeOfGroup({packet->data, static_cast<std::size_t>(packet->size)});
        }
        ffmpeg().unrefPacket(packet.get());
        if (time) {
            return Timecode::parsed(*time, av_q2d(rateOf(video)));
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<Timecode> cameraTimecode(MediaFile &file)
{
    const AVStream *video = file.video();
    std::optional<Timecode> found = timecodeOfTrack(*file.format());
    if (!found && video != nullptr) {
        found = timecodeIn(file.format()->metadata, rateOf(*video));
        found = found ? found : timecodeIn(video->metadata, rateOf(*video));
        found = found ? found : timecodeOfPictures(file, *video);
    }
    return found;
}

} // namespace larkspan
