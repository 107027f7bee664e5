#include "bench/offline/BareDecoder.h"

#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace orvalo::bench {

namespace {

void check(bool holds, const std::filesystem::path& file) {
    if (!holds) {
        throw std::runtime_error(file.string() + " is not a stereo file that decodes to floats");
    }
}

}  // namespace

struct BareDecoder::State {
    State() = default;
    ~State() {
        avcodec_free_context(&codec);
        avformat_close_input(&container);
        av_packet_free(&packet);
        av_frame_free(&frame);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    AVFormatContext* container = nullptr;
    AVCodecContext* codec = nullptr;
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    int stream = 0;
};

BareDecoder::BareDecoder(const std::filesystem::path& file) : state_(std::make_unique<State>()) {
    auto& s = *state_;
    check(avformat_open_input(&s.container, file.c_str(), nullptr, nullptr) == 0, file);
    check(avformat_find_stream_info(s.container, nullptr) >= 0, file);
    const AVCodec* decoder = nullptr;
    s.stream = av_find_best_stream(s.container, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    check(s.stream >= 0, file);
    s.codec = avcodec_alloc_context3(decoder);
    s.codec->thread_count = 1;
    avcodec_parameters_to_context(s.codec, s.container->streams[s.stream]->codecpar);
    check(avcodec_open2(s.codec, decoder, nullptr) == 0, file);
    check(s.codec->sample_fmt == AV_SAMPLE_FMT_FLTP && s.codec->ch_layout.nb_channels == 2, file);
}

BareDecoder::~BareDecoder() = default;

int BareDecoder::sampleRate() const {
    return state_->codec->sample_rate;
}

BareDecoder::Frames BareDecoder::next() {
    auto& s = *state_;
    while (avcodec_receive_frame(s.codec, s.frame) != 0) {
        if (av_read_frame(s.container, s.packet) != 0) {
            return {};
        }
        if (s.packet->stream_index == s.stream) {
            avcodec_send_packet(s.codec, s.packet);
        }
        av_packet_unref(s.packet);
    }
    const auto* const* planes = s.frame->extended_data;
    // NOLINTBEGIN(cppcoreguidelines-pro-type-reinterpret-cast): how FFmpeg hands out samples.
    return {reinterpret_cast<const float*>(planes[0]), reinterpret_cast<const float*>(planes[1]),
            static_cast<std::uint32_t>(s.frame->nb_samples)};
    // NOLINTEND(cppcoreguidelines-pro-type-reinterpret-cast)
}

}  // namespace orvalo::bench
