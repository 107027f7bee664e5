#include "demos/sound/AacFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/error.h>
#include <libavutil/log.h>
}

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

namespace orvalo {

namespace {

constexpr std::int64_t bitRate = 128000;
/// Blocks of the loop's end that are encoded before its start: the encoder's first blocks have
/// several times the coding noise of the others.
constexpr std::int64_t settlingBlocks = 16;

struct FreeCodec {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FreeFormat {
    void operator()(AVFormatContext* context) const {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

class AacWriter {
  public:
    AacWriter(const StereoSound& loop, int rate, std::string title,
              const std::filesystem::path& file);
    void write();

  private:
    void check(int result, const char* step) const;
    void openCodec();
    void openFile();
    void encode(std::int64_t from);
    void drain();

    const StereoSound& loop_;
    int rate_;
    std::string title_;
    std::string file_;
    std::unique_ptr<AVCodecContext, FreeCodec> codec_;
    std::unique_ptr<AVFormatContext, FreeFormat> format_;
    std::unique_ptr<AVFrame, FreeFrame> frame_;
    std::unique_ptr<AVPacket, FreePacket> packet_;
};

AacWriter::AacWriter(const StereoSound& loop, int rate, std::string title,
                     const std::filesystem::path& file)
    : loop_(loop),
      rate_(rate),
      title_(std::move(title)),
      file_(file),
      frame_(av_frame_alloc()),
      packet_(av_packet_alloc()) {
    av_log_set_level(AV_LOG_WARNING);
    openCodec();
    openFile();
}

void AacWriter::check(int result, const char* step) const {
    if (result < 0) {
        std::array<char, AV_ERROR_MAX_STRING_SIZE> reason{};
        av_strerror(result, reason.data(), reason.size());
        throw std::runtime_error(file_ + ": " + step + ": " + reason.data());
    }
}

void AacWriter::openCodec() {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    codec_.reset(codec != nullptr ? avcodec_alloc_context3(codec) : nullptr);
    if (!codec_) {
        throw std::runtime_error(file_ + ": libavcodec has no AAC encoder");
    }
    codec_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec_->sample_rate = rate_;
    codec_->bit_rate = bitRate;
    av_channel_layout_default(&codec_->ch_layout, 2);
    codec_->time_base = {1, rate_};
    codec_->flags |= AV_CODEC_FLAG_BITEXACT | AV_CODEC_FLAG_GLOBAL_HEADER;
    codec_->thread_count = 1;
    check(avcodec_open2(codec_.get(), codec, nullptr), "cannot start the AAC encoder");
}

void AacWriter::openFile() {
    AVFormatContext* format = nullptr;
    check(avformat_alloc_output_context2(&format, nullptr, "ipod", file_.c_str()),
          "cannot make an MP4 file");
    format_.reset(format);
    format_->flags |= AVFMT_FLAG_BITEXACT;
    AVStream* stream = avformat_new_stream(format, nullptr);
    if (stream == nullptr) {
        throw std::runtime_error(file_ + ": cannot add a stream");
    }
    stream->time_base = codec_->time_base;
    check(avcodec_parameters_from_context(stream->codecpar, codec_.get()), "cannot describe AAC");
    check(av_dict_set(&format->metadata, "title", title_.c_str(), 0), "cannot set the title");
    check(avio_open(&format->pb, file_.c_str(), AVIO_FLAG_WRITE), "cannot open");
    check(avformat_write_header(format, nullptr), "cannot write the header");
}

void AacWriter::encode(std::int64_t from) {
    AVFrame* frame = frame_.get();
    frame->nb_samples = codec_->frame_size;
    frame->format = codec_->sample_fmt;
    frame->sample_rate = rate_;
    frame->pts = from;
    check(av_channel_layout_copy(&frame->ch_layout, &codec_->ch_layout), "cannot lay out channels");
    check(av_frame_get_buffer(frame, 0), "cannot get memory");
    auto* left = reinterpret_cast<float*>(frame->extended_data[0]);  // NOLINT(*-pointer-arithmetic)
    auto* right =
        reinterpret_cast<float*>(frame->extended_data[1]);  // NOLINT(*-pointer-arithmetic)
    const auto frames = static_cast<std::int64_t>(loop_.frames());
    for (int index = 0; index < frame->nb_samples; ++index) {
        const std::int64_t at = (from + index) % frames;
        const auto inside = static_cast<std::size_t>(at < 0 ? at + frames : at);
        left[index] = loop_.left[inside];
        right[index] = loop_.right[inside];
    }
    const int sent = avcodec_send_frame(codec_.get(), frame);
    av_frame_unref(frame);
    check(sent, "cannot encode");
    drain();
}

void AacWriter::drain() {
    while (true) {
        AVPacket* packet = packet_.get();
        const int received = avcodec_receive_packet(codec_.get(), packet);
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) {
            return;
        }
        check(received, "cannot encode");
        // Keep one block before the start as the priming. The packets' durations end with the loop,
        // so that the rest of the last block is padding.
        const auto end = static_cast<std::int64_t>(loop_.frames());
        packet->duration = std::min<std::int64_t>(packet->duration, end - packet->pts);
        if (packet->pts < -codec_->frame_size || packet->duration <= 0) {
            av_packet_unref(packet);
            continue;
        }
        av_packet_rescale_ts(packet, codec_->time_base, format_->streams[0]->time_base);
        check(av_interleaved_write_frame(format_.get(), packet), "cannot write");
    }
}

void AacWriter::write() {
    const auto frames = static_cast<std::int64_t>(loop_.frames());
    // A block is encoded together with the following one, so encode one more than the loop has.
    const std::int64_t block = codec_->frame_size;
    for (std::int64_t from = -settlingBlocks * block; from < frames + block; from += block) {
        encode(from);
    }
    check(avcodec_send_frame(codec_.get(), nullptr), "cannot encode");
    drain();
    check(av_write_trailer(format_.get()), "cannot finish the file");
    check(avio_closep(&format_->pb), "cannot close");
}

}  // namespace

void writeAac(const StereoSound& loop, int rate, const std::string& title,
              const std::filesystem::path& file) {
    try {
        AacWriter(loop, rate, title, file).write();
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        throw;
    }
}

}  // namespace orvalo
