#include "classify/media/Decoder.h"

#include "classify/media/FFmpegLibraries.h"
#include "classify/media/MediaFile.h"

namespace larkspan {

void CodecDeleter::operator()(AVCodecContext *context) const
{
    ffmpeg().freeCodec(&context);
}

void FrameDeleter::operator()(AVFrame *frame) const
{
    ffmpeg().freeFrame(&frame);
}

CodecPtr openDecoder(const AVCodecParameters &parameters)
{
    const AVCodec *codec = ffmpeg().findDecoder(parameters.codec_id);
    if (codec == nullptr) {
        return nullptr;
    }
    CodecPtr decoder(ffmpeg().allocCodec(codec));
    if (!decoder || ffmpeg().parametersToContext(decoder.get(), &parameters) < 0) {
        return nullptr;
    }
    decoder->thread_count = 1; // clips run in parallel; one key frame gains nothing from threads
    decoder->max_pixels = mostPixels;
    decoder->skip_alpha = 1;
    return ffmpeg().openCodec(decoder.get(), codec, nullptr) < 0 ? nullptr : std::move(decoder);
}

} // namespace larkspan
