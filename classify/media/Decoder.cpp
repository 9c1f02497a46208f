#include "classify/media/Decoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include "classify/media/MediaFile.h"

namespace larkspan {

void CodecDeleter::operator()(AVCodecContext *context) const
{
    avcodec_free_context(&context);
}

void FrameDeleter::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

CodecPtr openDecoder(const AVCodecParameters &parameters)
{
    const AVCodec *codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr) {
        return nullptr;
    }
    CodecPtr decoder(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), &parameters) < 0) {
        return nullptr;
    }
    decoder->thread_count = 1; // clips run in parallel; one key frame gains nothing from threads
    decoder->max_pixels = mostPixels;
    decoder->skip_alpha = 1;
    return avcodec_open2(decoder.get(), codec, nullptr) < 0 ? nullptr : std::move(decoder);
}

} // namespace larkspan
