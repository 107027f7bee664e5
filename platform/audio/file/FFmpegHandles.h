#pragma once

#include <memory>

#include "platform/audio/file/FFmpegLibrary.h"

namespace orvalo {

/// Owners of FFmpeg's objects.
struct FFmpegDeleter {
    void operator()(AVFormatContext* context) const { ffmpeg().avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { ffmpeg().avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { ffmpeg().av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { ffmpeg().av_frame_free(&frame); }
    void operator()(AVIOContext* input) const {
        ffmpeg().av_freep(&input->buffer);
        ffmpeg().avio_context_free(&input);
    }
};

template <typename Object>
using FFmpegPointer = std::unique_ptr<Object, FFmpegDeleter>;

}  // namespace orvalo
