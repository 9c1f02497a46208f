#include "classify/media/FFmpegLibraries.h"

#include <optional>

#include <QtCore/QLibrary>

#include "core/base/LibraryFunction.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

bool findFormat(FFmpegLibraries &ffmpeg)
{
    QLibrary library(u"avformat"_s, LIBAVFORMAT_VERSION_MAJOR);
#if LIBAVFORMAT_VERSION_INT < AV_VERSION_INT(60, 15, 100)
    if (!findFunction(library, "av_stream_get_side_data", ffmpeg.sideData)) {
        return false;
    }
#endif
    return findFunction(library, "avformat_alloc_context", ffmpeg.allocFormat) &&
           findFunction(library, "avformat_open_input", ffmpeg.openInput) &&
           findFunction(library, "avformat_find_stream_info", ffmpeg.findStreamInfo) &&
           findFunction(library, "avformat_close_input", ffmpeg.closeInput) &&
           findFunction(library, "avformat_index_get_entries_count", ffmpeg.indexEntryCount) &&
           findFunction(library, "avformat_index_get_entry", ffmpeg.indexEntry) &&
           findFunction(library, "avio_alloc_context", ffmpeg.allocIO) &&
           findFunction(library, "avio_context_free", ffmpeg.freeIO) &&
           findFunction(library, "av_read_frame", ffmpeg.readFrame) &&
           findFunction(library, "av_seek_frame", ffmpeg.seekFrame);
}

bool findCodec(FFmpegLibraries &ffmpeg)
{
    QLibrary library(u"avcodec"_s, LIBAVCODEC_VERSION_MAJOR);
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
    if (!findFunction(library, "av_packet_side_data_get", ffmpeg.sideData)) {
        return false;
    }
#endif
    return findFunction(library, "avcodec_find_decoder", ffmpeg.findDecoder) &&
           findFunction(library, "avcodec_alloc_context3", ffmpeg.allocCodec) &&
           findFunction(library, "avcodec_parameters_to_context", ffmpeg.parametersToContext) &&
           findFunction(library, "avcodec_open2", ffmpeg.openCodec) &&
           findFunction(library, "avcodec_send_packet", ffmpeg.sendPacket) &&
           findFunction(library, "avcodec_receive_frame", ffmpeg.receiveFrame) &&
           findFunction(library, "avcodec_flush_buffers", ffmpeg.flushBuffers) &&
           findFunction(library, "avcodec_free_context", ffmpeg.freeCodec) &&
           findFunction(library, "av_packet_alloc", ffmpeg.allocPacket) &&
           findFunction(library, "av_packet_unref", ffmpeg.unrefPacket) &&
           findFunction(library, "av_packet_free", ffmpeg.freePacket);
}

bool findUtil(FFmpegLibraries &ffmpeg)
{
    QLibrary library(u"avutil"_s, LIBAVUTIL_VERSION_MAJOR);
    return findFunction(library, "av_frame_alloc", ffmpeg.allocFrame) &&
           findFunction(library, "av_frame_get_buffer", ffmpeg.getFrameBuffer) &&
           findFunction(library, "av_frame_unref", ffmpeg.unrefFrame) &&
           findFunction(library, "av_frame_free", ffmpeg.freeFrame) &&
           findFunction(library, "av_dict_get", ffmpeg.dictGet) &&
           findFunction(library, "av_dict_set", ffmpeg.dictSet) &&
           findFunction(library, "av_dict_free", ffmpeg.dictFree) &&
           findFunction(library, "av_opt_set", ffmpeg.optSet) &&
           findFunction(library, "av_opt_set_int", ffmpeg.optSetInt) &&
           findFunction(library, "av_log_set_level", ffmpeg.logSetLevel) &&
           findFunction(library, "av_max_alloc", ffmpeg.maxAlloc) &&
           findFunction(library, "av_match_name", ffmpeg.matchName) &&
           findFunction(library, "av_malloc", ffmpeg.malloc) && findFunction(library, "av_free", ffmpeg.free) &&
           findFunction(library, "av_freep", ffmpeg.freep);
}

bool findScale(FFmpegLibraries &ffmpeg)
{
    QLibrary library(u"swscale"_s, LIBSWSCALE_VERSION_MAJOR);
    return findFunction(library, "sws_isSupportedInput", ffmpeg.isSupportedInput) &&
           findFunction(library, "sws_getCachedContext", ffmpeg.getCachedContext) &&
           findFunction(library, "sws_getCoefficients", ffmpeg.getCoefficients) &&
           findFunction(library, "sws_setColorspaceDetails", ffmpeg.setColorspaceDetails) &&
           findFunction(library, "sws_scale", ffmpeg.scale) &&
           findFunction(library, "sws_freeContext", ffmpeg.freeScaler);
}

std::optional<FFmpegLibraries> load()
{
    FFmpegLibraries ffmpeg{};
    const bool complete = findFormat(ffmpeg) && findCodec(ffmpeg) && findUtil(ffmpeg) && findScale(ffmpeg);
    return complete ? std::optional(ffmpeg) : std::nullopt;
}

} // namespace

const FFmpegLibraries *FFmpegLibraries::loaded()
{
    static const std::optional<FFmpegLibraries> ffmpeg = load();
    return ffmpeg ? &*ffmpeg : nullptr;
}

} // namespace larkspan
