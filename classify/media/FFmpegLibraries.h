#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avstring.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace larkspan {

// The functions of FFmpeg that read clips. Its libraries are loaded with the first clip: they bring some hundred
// others, which would slow down every start and take memory even in the launcher.
struct FFmpegLibraries
{
    // Returns the functions, and loads the libraries at the first call. Null if one isn't installed or has another
    // major version. Any thread.
    static const FFmpegLibraries *loaded();

    // libavformat
    decltype(&avformat_alloc_context) allocFormat;
    decltype(&avformat_open_input) openInput;
    decltype(&avformat_find_stream_info) findStreamInfo;
    decltype(&avformat_close_input) closeInput;
    decltype(&avformat_index_get_entries_count) indexEntryCount;
    decltype(&avformat_index_get_entry) indexEntry;
    decltype(&avio_alloc_context) allocIO;
    decltype(&avio_context_free) freeIO;
    decltype(&av_read_frame) readFrame;
    decltype(&av_seek_frame) seekFrame;
#if LIBAVFORMAT_VERSION_INT < AV_VERSION_INT(60, 15, 100)
    decltype(&av_stream_get_side_data) sideData;
#endif

    // libavcodec
    decltype(&avcodec_find_decoder) findDecoder;
    decltype(&avcodec_alloc_context3) allocCodec;
    decltype(&avcodec_parameters_to_context) parametersToContext;
    decltype(&avcodec_open2) openCodec;
    decltype(&avcodec_send_packet) sendPacket;
    decltype(&avcodec_receive_frame) receiveFrame;
    decltype(&avcodec_flush_buffers) flushBuffers;
    decltype(&avcodec_free_context) freeCodec;
    decltype(&av_packet_alloc) allocPacket;
    decltype(&av_packet_unref) unrefPacket;
    decltype(&av_packet_free) freePacket;
#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)
    decltype(&av_packet_side_data_get) sideData;
#endif

    // libavutil
    decltype(&av_frame_alloc) allocFrame;
    decltype(&av_frame_get_buffer) getFrameBuffer;
    decltype(&av_frame_unref) unrefFrame;
    decltype(&av_frame_free) freeFrame;
    decltype(&av_dict_get) dictGet;
    decltype(&av_dict_set) dictSet;
    decltype(&av_dict_free) dictFree;
    decltype(&av_opt_set) optSet;
    decltype(&av_opt_set_int) optSetInt;
    decltype(&av_log_set_level) logSetLevel;
    decltype(&av_max_alloc) maxAlloc;
    decltype(&av_match_name) matchName;
    decltype(&av_malloc) malloc;
    decltype(&av_free) free;
    decltype(&av_freep) freep;

    // libswscale
    decltype(&sws_isSupportedInput) isSupportedInput;
    decltype(&sws_getCachedContext) getCachedContext;
    decltype(&sws_getCoefficients) getCoefficients;
    decltype(&sws_setColorspaceDetails) setColorspaceDetails;
    decltype(&sws_scale) scale;
    decltype(&sws_freeContext) freeScaler;
};

// Returns the functions once a file is open, and the libraries are loaded.
inline const FFmpegLibraries &ffmpeg()
{
    return *FFmpegLibraries::loaded();
}

} // namespace larkspan
