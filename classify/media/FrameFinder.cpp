#include "classify/media/FrameFinder.h"

#include <algorithm>

#include "classify/media/FFmpegLibraries.h"
#include "classify/media/FFmpegVersions.h"
#include "classify/media/MediaFile.h"

namespace larkspan {

namespace {

constexpr double tolerance = 0.5; // seconds, either side

// A key frame search for one sample.
struct Approach
{
    double back;     // seconds before the sample's time at which to start reading
    bool insideOnly; // a key frame before the window is of no use yet: another may lie inside
};

// With an index the seek lands on the last key frame that is early enough. Frames are stored in another order than they
// are shown in, so it may turn out to be too late after all; then an earlier one.
constexpr Approach indexedApproaches[] = {{-tolerance, false}, {tolerance, false}, {tolerance + 4.0, false}};
// Without an index it lands on whatever is decoded at that time, and that may be shown a few frames later.
constexpr double reordering = 0.25;
constexpr Approach plainApproaches[] = {
    {tolerance + reordering, true}, {tolerance + 2.0, false}, {tolerance + 10.0, false}};

// Times and lengths from a file may be anything; held to this, their sums and differences stay numbers.
constexpr std::int64_t mostTicks = std::int64_t{1} << 61;

std::int64_t held(std::int64_t ticks)
{
    return std::clamp(ticks, -mostTicks, mostTicks);
}

// Returns whether a frame that begins at a time, and lasts as long as it says, is over before another time.
bool endsBefore(std::int64_t begin, std::int64_t duration, std::int64_t time)
{
    return held(begin) + held(duration) < time;
}

bool isDamaged(const AVFrame &frame)
{
    return (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0;
}

} // namespace

void PacketDeleter::operator()(AVPacket *packet) const
{
    ffmpeg().freePacket(&packet);
}

FrameFinder::FrameFinder(MediaFile &file, AVStream &stream, CodecPtr decoder, bool shrinksMuch)
    : m_file(file)
    , m_stream(stream)
    , m_decoder(std::move(decoder))
    , m_packet(ffmpeg().allocPacket())
    , m_frame(ffmpeg().allocFrame())
    , m_shown(ffmpeg().allocFrame())
    , m_shrinksMuch(shrinksMuch)
{
    m_decoder->pkt_timebase = stream.time_base;
}

FrameFinder::~FrameFinder() = default;

std::int64_t FrameFinder::packetTime() const
{
    return m_packet->pts != AV_NOPTS_VALUE ? m_packet->pts : m_packet->dts;
}

std::int64_t FrameFinder::ticks(double seconds) const
{
    constexpr auto most = static_cast<double>(mostTicks);
    const double exact = (seconds + m_file.startSeconds()) / av_q2d(m_stream.time_base);
    return static_cast<std::int64_t>(std::clamp(exact, -most, most));
}

bool FrameFinder::seek(double seconds)
{
    ffmpeg().flushBuffers(m_decoder.get());
    // The first frames of a stream are decoded before the time at which it starts.
    const double start = m_file.isFormat("mov") ? 0.0 : -1.0;
    const double target = seconds > 0.0 ? seconds : start;
    const bool sought = ffmpeg().seekFrame(m_file.format(), m_stream.index, ticks(target), AVSEEK_FLAG_BACKWARD) >= 0;
    return sought || m_untouched;
}

bool FrameFinder::readPacket()
{
    m_untouched = false;
    do {
        ffmpeg().unrefPacket(m_packet.get());
        if (m_file.limitsReached() || ffmpeg().readFrame(m_file.format(), m_packet.get()) < 0) {
            return false;
        }
    } while (m_packet->stream_index != m_stream.index);
    return true;
}

FrameFinder::KeyFound FrameFinder::readKeyPacket(const Window &window, bool insideOnly)
{
    while (readPacket()) {
        const std::int64_t time = packetTime();
        if (time != AV_NOPTS_VALUE && time > window.to) {
            return KeyFound::TooLate;
        }
        const bool whole = (m_packet->flags & AV_PKT_FLAG_CORRUPT) == 0;
        if ((m_packet->flags & AV_PKT_FLAG_KEY) != 0 && whole && (!insideOnly || time >= window.from)) {
            return KeyFound::Yes;
        }
    }
    return KeyFound::No;
}

// Most key frames come out by themselves, and nothing refers to them: the quickest way to a picture.
bool FrameFinder::decodeAlone()
{
    m_decoder->skip_frame = AVDISCARD_NONKEY;
    m_decoder->skip_loop_filter = m_shrinksMuch ? AVDISCARD_ALL : AVDISCARD_DEFAULT;
    return ffmpeg().sendPacket(m_decoder.get(), m_packet.get()) >= 0 &&
           ffmpeg().sendPacket(m_decoder.get(), nullptr) >= 0 &&
           ffmpeg().receiveFrame(m_decoder.get(), m_frame.get()) >= 0 && !isDamaged(*m_frame);
}

// From the key packet that was read up to the first frame in the window.
bool FrameFinder::decodeOn(const Window &window)
{
    ffmpeg().unrefFrame(m_shown.get());
    m_decoder->skip_loop_filter = m_shrinksMuch ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    do {
        const bool over = packetTime() != AV_NOPTS_VALUE && m_packet->duration > 0 &&
                          endsBefore(packetTime(), m_packet->duration, window.from);
        m_decoder->skip_frame = over ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
        // A broken packet costs its frame, not those after it.
        [[maybe_unused]] const int sent = ffmpeg().sendPacket(m_decoder.get(), m_packet.get());
        if (const auto found = takeFrames(window)) {
            return *found;
        }
    } while (readPacket());
    if (m_file.limitsReached()) {
        return false;
    }
    ffmpeg().sendPacket(m_decoder.get(), nullptr);
    if (const auto found = takeFrames(window)) {
        return *found;
    }
    // The last frame of the file is shown for as long as it says.
    const bool stillShown =
        m_shown->data[0] != nullptr && !endsBefore(m_shown->best_effort_timestamp, durationOf(*m_shown), window.from);
    std::swap(m_frame, m_shown);
    return stillShown;
}

// Takes the frames that the decoder has ready; none if it needs more packets.
std::optional<bool> FrameFinder::takeFrames(const Window &window)
{
    while (ffmpeg().receiveFrame(m_decoder.get(), m_frame.get()) >= 0) {
        if (isDamaged(*m_frame)) {
            continue;
        }
        const std::int64_t time = m_frame->best_effort_timestamp;
        if (time == AV_NOPTS_VALUE || window.holds(time)) {
            return true;
        }
        if (time > window.to) {
            // Nothing new comes up in the whole window: what came before it is still shown.
            std::swap(m_frame, m_shown);
            return m_frame->data[0] != nullptr;
        }
        std::swap(m_frame, m_shown);
    }
    return std::nullopt;
}

const AVFrame *FrameFinder::frameAt(double seconds)
{
    const bool hasClock = m_stream.time_base.num > 0 && m_stream.time_base.den > 0;
    if (!m_packet || !m_frame || !m_shown || !hasClock) {
        return nullptr;
    }
    const Window window{ticks(seconds - tolerance), ticks(seconds + tolerance)};
    const bool indexed = !m_file.isFormat("mpegts") && !m_file.isFormat("mpeg");
    for (const Approach &approach : indexed ? indexedApproaches : plainApproaches) {
        const auto readKey = [&] {
            return seek(seconds - approach.back) ? readKeyPacket(window, approach.insideOnly) : KeyFound::No;
        };
        KeyFound key = readKey();
        if (key == KeyFound::Yes && window.holds(packetTime())) {
            if (decodeAlone()) {
                return m_frame.get();
            }
            key = readKey();
        }
        if (key == KeyFound::Yes && decodeOn(window)) {
            return m_frame.get();
        }
        if (m_file.limitsReached() || (indexed && key == KeyFound::No)) {
            break; // an index that leads nowhere does so for earlier frames, too
        }
    }
    return nullptr;
}

} // namespace larkspan
