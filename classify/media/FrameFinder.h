#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "classify/media/Decoder.h"

struct AVPacket;
struct AVStream;

namespace larkspan {

class MediaFile;

struct PacketDeleter
{
    void operator()(AVPacket *packet) const;
};
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;

// Finds and decodes single frames of one open file, reading and decoding as little as it can.
class FrameFinder
{
public:
    // The file must outlive the finder. shrinksMuch: the frames will be made so small that blocks don't show.
    FrameFinder(MediaFile &file, AVStream &stream, CodecPtr decoder, bool shrinksMuch);
    ~FrameFinder();

    // A frame from within half a second of a time, or the one that is still shown then. Null if none can be decoded.
    // Stays the finder's; good until the next call.
    const AVFrame *frameAt(double seconds);

private:
    // The times that a frame may have, in ticks of the stream.
    struct Window
    {
        std::int64_t from;
        std::int64_t to;

        bool holds(std::int64_t time) const { return time >= from && time <= to; }
    };
    enum class KeyFound { Yes, TooLate, No };

    std::int64_t ticks(double seconds) const;
    std::int64_t packetTime() const;
    bool seek(double seconds);
    bool readPacket();
    KeyFound readKeyPacket(const Window &window, bool insideOnly);
    bool decodeAlone();
    bool decodeOn(const Window &window);
    std::optional<bool> takeFrames(const Window &window);

    MediaFile &m_file;
    AVStream &m_stream;
    CodecPtr m_decoder;
    PacketPtr m_packet;
    FramePtr m_frame;
    FramePtr m_shown; // the last frame before the window; without data if none
    bool m_shrinksMuch;
    bool m_untouched = true; // nothing was read yet: the next packet is the file's first
};

} // namespace larkspan
