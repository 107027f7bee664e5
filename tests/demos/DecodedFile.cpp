#include "tests/demos/DecodedFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace orvalo::testing {

namespace {

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct FreeCodec {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
using Format = std::unique_ptr<AVFormatContext, CloseInput>;

void check(bool holds, const std::filesystem::path& file, const char* what) {
    if (!holds) {
        throw std::runtime_error(file.string() + ": " + what);
    }
}

Format open(const std::filesystem::path& file, bool ignoringEdits) {
    AVFormatContext* context = nullptr;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "ignore_editlist", ignoringEdits ? "1" : "0", 0);
    const int opened = avformat_open_input(&context, file.c_str(), nullptr, &options);
    av_dict_free(&options);
    check(opened >= 0, file, "cannot be opened");
    Format format(context);
    check(avformat_find_stream_info(context, nullptr) >= 0, file, "has no streams");
    check(context->nb_streams == 1, file, "has more than one stream");
    return format;
}

}  // namespace

DecodedFile decode(const std::filesystem::path& file) {
    DecodedFile decoded;
    decoded.headerFrames = open(file, true)->streams[0]->duration;
    const Format format = open(file, false);
    const AVStream* stream = format->streams[0];
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    check(decoder != nullptr, file, "has an unknown coding");
    const std::unique_ptr<AVCodecContext, FreeCodec> codec(avcodec_alloc_context3(decoder));
    avcodec_parameters_to_context(codec.get(), stream->codecpar);
    codec->pkt_timebase = stream->time_base;
    check(avcodec_open2(codec.get(), decoder, nullptr) >= 0, file, "cannot be decoded");
    decoded.rate = codec->sample_rate;
    decoded.channels = codec->ch_layout.nb_channels;
    check(codec->sample_fmt == AV_SAMPLE_FMT_FLTP, file, "is not decoded to planar floats");
    check(decoded.channels == 2, file, "is not in stereo");

    const std::unique_ptr<AVPacket, FreePacket> packet(av_packet_alloc());
    const std::unique_ptr<AVFrame, FreeFrame> frame(av_frame_alloc());
    bool first = true;
    bool ended = false;
    while (!ended) {
        const int read = av_read_frame(format.get(), packet.get());
        check(read >= 0 || read == AVERROR_EOF, file, "breaks off");
        ended = read == AVERROR_EOF;
        if (!ended && first) {
            decoded.firstTime = packet->pts;
            first = false;
        }
        check(avcodec_send_packet(codec.get(), ended ? nullptr : packet.get()) >= 0, file,
              "is damaged");
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(codec.get(), frame.get()) >= 0) {
            const auto* left = reinterpret_cast<const float*>(frame->extended_data[0]);
            const auto* right = reinterpret_cast<const float*>(frame->extended_data[1]);
            decoded.left.insert(decoded.left.end(), left, left + frame->nb_samples);
            decoded.right.insert(decoded.right.end(), right, right + frame->nb_samples);
            av_frame_unref(frame.get());
        }
    }
    const auto frames = static_cast<std::size_t>(
        std::max<std::int64_t>(decoded.headerFrames + decoded.firstTime, 0));
    check(decoded.left.size() >= frames, file, "holds less than it states");
    decoded.left.resize(frames);
    decoded.right.resize(frames);
    return decoded;
}

}  // namespace orvalo::testing
