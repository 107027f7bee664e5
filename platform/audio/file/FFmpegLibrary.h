#pragma once

#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "platform/foundation/LastingLibrary.h"

namespace orvalo {

/// What is used of libavformat and libavcodec, under its own names. They need 130 libraries more,
/// whose loading takes longer than all else of a start, so that they are loaded when the first file
/// is opened.
class FFmpegLibrary {
    // The other one needs it; one after the other they load sooner.
    LastingLibrary codec_{"libavcodec.so." AV_STRINGIFY(LIBAVCODEC_VERSION_MAJOR)};
    LastingLibrary format_{"libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR)};

  public:
    FFmpegLibrary();

#define ORVALO_FORMAT(name) decltype(::name)* const name = format_[#name]
#define ORVALO_CODEC(name) decltype(::name)* const name = codec_[#name]
    ORVALO_FORMAT(av_probe_input_buffer2);
    ORVALO_FORMAT(av_read_frame);
    ORVALO_FORMAT(av_seek_frame);
    ORVALO_FORMAT(av_write_frame);
    ORVALO_FORMAT(av_write_trailer);
    ORVALO_FORMAT(avformat_alloc_context);
    ORVALO_FORMAT(avformat_alloc_output_context2);
    ORVALO_FORMAT(avformat_close_input);
    ORVALO_FORMAT(avformat_find_stream_info);
    ORVALO_FORMAT(avformat_free_context);
    ORVALO_FORMAT(avformat_index_get_entries_count);
    ORVALO_FORMAT(avformat_index_get_entry);
    ORVALO_FORMAT(avformat_new_stream);
    ORVALO_FORMAT(avformat_open_input);
    ORVALO_FORMAT(avformat_write_header);
    ORVALO_FORMAT(avio_alloc_context);
    ORVALO_FORMAT(avio_closep);
    ORVALO_FORMAT(avio_context_free);
    ORVALO_FORMAT(avio_flush);
    ORVALO_FORMAT(avio_open);
    ORVALO_CODEC(av_get_exact_bits_per_sample);
    ORVALO_CODEC(av_packet_alloc);
    ORVALO_CODEC(av_packet_free);
    ORVALO_CODEC(av_packet_get_side_data);
    ORVALO_CODEC(av_packet_unref);
    ORVALO_CODEC(avcodec_alloc_context3);
    ORVALO_CODEC(avcodec_descriptor_get);
    ORVALO_CODEC(avcodec_find_decoder);
    ORVALO_CODEC(avcodec_flush_buffers);
    ORVALO_CODEC(avcodec_free_context);
    ORVALO_CODEC(avcodec_get_name);
    ORVALO_CODEC(avcodec_open2);
    ORVALO_CODEC(avcodec_parameters_to_context);
    ORVALO_CODEC(avcodec_receive_frame);
    ORVALO_CODEC(avcodec_send_packet);
#undef ORVALO_FORMAT
#undef ORVALO_CODEC
};

/// The library, which loadFFmpeg() has loaded before. Any thread.
const FFmpegLibrary& ffmpeg();

/// Loads it unless it is there. Throws NSError, "<path>: <reason>", when it cannot be loaded: it is
/// needed for the file of that path. Any thread.
void loadFFmpeg(const std::string& path);

}  // namespace orvalo
