#pragma once

#include <memory>

struct AVCodecContext;
struct AVCodecParameters;
struct AVFrame;

namespace larkspan {

struct CodecDeleter
{
    void operator()(AVCodecContext *context) const;
};
struct FrameDeleter
{
    void operator()(AVFrame *frame) const;
};
using CodecPtr = std::unique_ptr<AVCodecContext, CodecDeleter>;
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;

// A decoder of one thread that refuses pictures of unbelievable size. Null if there is none for the codec.
[[nodiscard]] CodecPtr openDecoder(const AVCodecParameters &parameters);

} // namespace larkspan
