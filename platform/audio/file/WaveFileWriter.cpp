#include "platform/audio/file/WaveFileWriter.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/audio/file/FFmpeg.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

bool isWrittenDirectly(const std::string& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

constexpr std::size_t kRun = 64;

/// Compilers vectorise a loop of fixed length.
void interleaveRun(const float* __restrict left, const float* __restrict right,
                   float* __restrict samples) {
    for (std::size_t frame = 0; frame < kRun; ++frame) {
        samples[2 * frame] = left[frame];
        samples[2 * frame + 1] = right[frame];
    }
}

void interleave(const AudioBlock& block, float* samples) {
    const std::size_t channels = block.channelCount;
    const std::size_t frames = block.frameCount;
    std::size_t done = 0;
    if (channels == 2) {
        for (; done + kRun <= frames; done += kRun) {
            interleaveRun(block.channels[0] + done, block.channels[1] + done, samples + 2 * done);
        }
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t frame = done; frame < frames; ++frame) {
            samples[frame * channels + channel] = block.channels[channel][frame];
        }
    }
}

}  // namespace

struct WaveFileWriter::Muxer {
    AVFormatContext* context = nullptr;
    std::string unfinished;  ///< Removed by the destructor.
    FFmpegPointer<AVPacket> packet;
    std::vector<float> samples;  ///< The packet's.

    explicit Muxer(const std::string& path) {
        loadFFmpeg(path);
        packet.reset(lateFFmpeg(av_packet_alloc)());
        lateFFmpeg(avformat_alloc_output_context2)(&context, nullptr, "wav", nullptr);
    }
    ~Muxer() {
        lateFFmpeg(avio_closep)(&context->pb);
        lateFFmpeg(avformat_free_context)(context);
        if (!unfinished.empty()) {
            std::error_code ignored;
            std::filesystem::remove(unfinished, ignored);
        }
    }
    Muxer(const Muxer&) = delete;
    Muxer& operator=(const Muxer&) = delete;
};

WaveFileWriter::WaveFileWriter(const std::string& path, const AVAudioFormat& format)
    : path_(path),
      frameBytes_(format.channelCount * static_cast<std::uint32_t>(sizeof(float))),
      workingPath_(isWrittenDirectly(path) ? path : path + ".part"),
      muxer_(std::make_unique<Muxer>(path)) {
    auto* context = muxer_->context;
    // All versions of FFmpeg then write the same bytes.
    context->flags |= AVFMT_FLAG_BITEXACT;
    auto* parameters = lateFFmpeg(avformat_new_stream)(context, nullptr)->codecpar;
    parameters->codec_type = AVMEDIA_TYPE_AUDIO;
    parameters->codec_id = AV_CODEC_ID_PCM_F32LE;
    parameters->format = AV_SAMPLE_FMT_FLT;
    parameters->sample_rate = static_cast<int>(std::lround(format.sampleRate));
    parameters->bits_per_coded_sample = 32;
    parameters->block_align = static_cast<int>(frameBytes_);
    lateFFmpeg(av_channel_layout_default)(&parameters->ch_layout,
                                          static_cast<int>(format.channelCount));

    check(lateFFmpeg(avio_open)(&context->pb, ("file:" + workingPath_).c_str(),
                                AVIO_FLAG_WRITE | AVIO_FLAG_DIRECT));
    if (workingPath_ != path_) {
        muxer_->unfinished = workingPath_;
    }
    AVDictionary* options = nullptr;
    lateFFmpeg(av_dict_set)(&options, "rf64", "auto", 0);
    const int result = lateFFmpeg(avformat_write_header)(context, &options);
    lateFFmpeg(av_dict_free)(&options);
    check(result);
}

WaveFileWriter::~WaveFileWriter() = default;

const std::string& WaveFileWriter::unfinishedFile() const {
    return muxer_->unfinished;
}

void WaveFileWriter::checkLimit(std::int64_t frames) const {
    rlimit limit{};
    if (workingPath_ != path_ && getrlimit(RLIMIT_FSIZE, &limit) == 0 &&
        static_cast<rlim_t>(frames) > limit.rlim_cur / frameBytes_) {
        throw NSError::posix(EFBIG, path_);
    }
}

void WaveFileWriter::write(const AudioBlock& block) {
    // The interleaved samples of so many frames stay in the processor's cache.
    constexpr std::uint32_t kPiece = 4096;
    for (std::uint32_t done = 0; done < block.frameCount; done += kPiece) {
        const auto count = std::min(block.frameCount - done, kPiece);
        writePiece(AudioBlockPart(block, done, count).block());
    }
}

void WaveFileWriter::writePiece(const AudioBlock& block) {
    auto& samples = muxer_->samples;
    samples.resize(std::size_t{block.channelCount} * block.frameCount);
    interleave(block, samples.data());
    auto* packet = muxer_->packet.get();
    packet->data = reinterpret_cast<std::uint8_t*>(samples.data());
    packet->size = static_cast<int>(samples.size() * sizeof(float));
    check(lateFFmpeg(av_write_frame)(muxer_->context, packet));
    check(muxer_->context->pb->error);
}

void WaveFileWriter::finish() {
    check(lateFFmpeg(av_write_trailer)(muxer_->context));
    lateFFmpeg(avio_flush)(muxer_->context->pb);
    check(muxer_->context->pb->error);
    check(lateFFmpeg(avio_closep)(&muxer_->context->pb));
    if (workingPath_ != path_) {
        std::error_code error;
        std::filesystem::rename(workingPath_, path_, error);
        if (error) {
            throw NSError::posix(error.value(), path_);
        }
        muxer_->unfinished.clear();
    }
}

void WaveFileWriter::check(int ffmpegResult) const {
    if (ffmpegResult < 0) {
        fail(ffmpegResult);
    }
}

void WaveFileWriter::fail(int ffmpegError) const {
    // FFmpeg negates the system's error numbers.
    throw NSError::posix(AVUNERROR(ffmpegError), path_);
}

}  // namespace orvalo
