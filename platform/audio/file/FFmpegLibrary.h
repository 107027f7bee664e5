#pragma once

#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avstring.h>
#include <libavutil/opt.h>
}

#include "platform/foundation/LastingLibrary.h"

namespace orvalo {

/// What is used of libavformat, libavcodec and libavutil, under its own names. They need 130
/// libraries more, whose loading takes longer than all else of a start, so that they are loaded
/// when the first file is opened.
class FFmpegLibrary {
    // Each needs the one before; one after the other they load sooner.
    LastingLibrary utilities_{"libavutil.so." AV_STRINGIFY(LIBAVUTIL_VERSION_MAJOR)};
    LastingLibrary codec_{"libavcodec.so." AV_STRINGIFY(LIBAVCODEC_VERSION_MAJOR)};
    LastingLibrary format_{"libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR)};

  public:
    FFmpegLibrary();

#define ORVALO_FORMAT(name) decltype(::name)* const name = format_[#name]
#define ORVALO_CODEC(name) decltype(::name)* const name = codec_[#name]
#define ORVALO_UTILITY(name) decltype(::name)* const name = utilities_[#name]
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
    ORVALO_UTILITY(av_channel_layout_default);
    ORVALO_UTILITY(av_dict_free);
    ORVALO_UTILITY(av_dict_get);
    ORVALO_UTILITY(av_dict_set);
    ORVALO_UTILITY(av_dict_set_int);
    ORVALO_UTILITY(av_frame_alloc);
    ORVALO_UTILITY(av_frame_free);
    ORVALO_UTILITY(av_frame_unref);
    ORVALO_UTILITY(av_freep);
    ORVALO_UTILITY(av_get_packed_sample_fmt);
    ORVALO_UTILITY(av_log_format_line2);
    ORVALO_UTILITY(av_log_set_callback);
    ORVALO_UTILITY(av_malloc);
    ORVALO_UTILITY(av_match_list);
    ORVALO_UTILITY(av_match_name);
    ORVALO_UTILITY(av_opt_set);
    ORVALO_UTILITY(av_rescale_q);
    ORVALO_UTILITY(av_rescale_q_rnd);
    ORVALO_UTILITY(av_sample_fmt_is_planar);
#undef ORVALO_FORMAT
#undef ORVALO_CODEC
#undef ORVALO_UTILITY
};

/// The library, which loadFFmpeg() has loaded before. Any thread.
const FFmpegLibrary& ffmpeg();

/// Loads it unless it is there. Throws NSError, "<path>: <reason>", when it cannot be loaded: it is
/// needed for the file of that path. Any thread.
void loadFFmpeg(const std::string& path);

}  // namespace orvalo
