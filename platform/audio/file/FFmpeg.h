#pragma once

#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avstring.h>
#include <libavutil/opt.h>
}

#include "platform/foundation/LateLibrary.h"

/// A function of libavformat, libavcodec or libavutil, as in lateFFmpeg(av_read_frame)(context,
/// packet). Loaded late, because these libraries need 130 others, which take 24 ms to load.
#define lateFFmpeg(name) ORVALO_LATE_FUNCTION(::orvalo::ffmpeg(), name)

namespace orvalo {

/// The FFmpeg libraries, which loadFFmpeg() has loaded. Any thread.
const LateLibrary& ffmpeg();

/// Loads them at the first call, for the file of this path. They log to GLib, as debug messages.
/// Throws NSError, "<path>: <reason>", when they cannot be loaded; the next call tries again. Any
/// thread.
void loadFFmpeg(const std::string& path);

struct FFmpegDeleter {
    void operator()(AVFormatContext* context) const { lateFFmpeg(avformat_close_input)(&context); }
    void operator()(AVCodecContext* context) const { lateFFmpeg(avcodec_free_context)(&context); }
    void operator()(AVPacket* packet) const { lateFFmpeg(av_packet_free)(&packet); }
    void operator()(AVFrame* frame) const { lateFFmpeg(av_frame_free)(&frame); }
    void operator()(AVIOContext* input) const {
        lateFFmpeg(av_freep)(&input->buffer);
        lateFFmpeg(avio_context_free)(&input);
    }
};

/// Owns one of FFmpeg's objects.
template <typename Object>
using FFmpegPointer = std::unique_ptr<Object, FFmpegDeleter>;

}  // namespace orvalo
