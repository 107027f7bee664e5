#include "platform/audio/signal/SampleRateConverter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "platform/audio/signal/MapChannels.h"
#include "platform/foundation/FatalError.h"

namespace orvalo {

namespace {

// Kaiser's formulas: 128 taps and beta 11.2 hold the stop band 110 dB down, and at 44.1 kHz the
// pass band reaches to 20 kHz.
constexpr int kFilterTaps = 128;
constexpr double kKaiserBeta = 11.2;
constexpr double kCutoff = 0.97;

// Converting in slices keeps the resampler's buffers small and lets prime() grow them to their
// final size.
constexpr std::uint32_t kSliceFrames = 256;

void freeResampler(SwrContext* context) {
    swr_free(&context);
}

std::uint32_t channelsBetween(const AVAudioFormat& from, const AVAudioFormat& to) {
    return std::min(from.channelCount, to.channelCount);
}

// For one slice, with the output from before the start.
std::uint32_t largestSliceInput(const AVAudioFormat& from, const AVAudioFormat& to) {
    const double ratio = std::max(1.0, from.sampleRate / to.sampleRate);
    return static_cast<std::uint32_t>(std::ceil((kSliceFrames + kFilterTaps) * ratio)) + 16;
}

SwrContext* openResampler(int from, int to, std::uint32_t channels) {
    AVChannelLayout layout{};
    av_channel_layout_default(&layout, static_cast<int>(channels));
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(&context, &layout, AV_SAMPLE_FMT_FLTP, to, &layout, AV_SAMPLE_FMT_FLTP,
                        from, 0, nullptr);
    if (context == nullptr) {
        fatalError("No memory for a sample rate converter.");
    }
    av_opt_set_int(context, "filter_size", kFilterTaps, 0);
    av_opt_set_int(context, "filter_type", SWR_FILTER_TYPE_KAISER, 0);
    av_opt_set_double(context, "kaiser_beta", kKaiserBeta, 0);
    av_opt_set_double(context, "cutoff", kCutoff, 0);
    av_opt_set_int(context, "exact_rational", 1, 0);
    // For ratios whose phases exceed the table.
    av_opt_set_int(context, "linear_interp", 1, 0);
    if (swr_init(context) < 0) {
        fatalError("The sample rate converter does not take these rates.");
    }
    return context;
}

}  // namespace

SampleRateConverter::SampleRateConverter(const AVAudioFormat& from, const AVAudioFormat& to)
    : from_(from),
      to_(to),
      resampler_(nullptr, freeResampler),
      mapped_({from.sampleRate, channelsBetween(from, to)}, largestSliceInput(from, to)),
      discarded_({to.sampleRate, channelsBetween(from, to)}, kSliceFrames) {
    const auto inputRate = std::lround(from.sampleRate);
    const auto outputRate = std::lround(to.sampleRate);
    if (inputRate == outputRate) {
        return;
    }
    const auto divisor = std::gcd(inputRate, outputRate);
    inputStep_ = inputRate / divisor;
    outputStep_ = outputRate / divisor;
    resampler_.reset(openResampler(static_cast<int>(inputRate), static_cast<int>(outputRate),
                                   channelsBetween(from, to)));
    prime();
}

SampleRateConverter::~SampleRateConverter() = default;

// Feeds silence from before the stream's start. Otherwise libswresample would begin with a mirror
// image of the first frames. The resampler's buffers grow to their final size, and the look-ahead
// is measured.
void SampleRateConverter::prime() {
    const std::uint32_t sliceInput = mapped_.frameCapacity();
    const AVAudioPCMBuffer silence(mapped_.format(), 8 * sliceInput);
    const auto feed = [&](std::uint32_t inputFrames, std::uint32_t outputFrames) {
        return resample(silence.block(inputFrames), discarded_.block(outputFrames));
    };
    std::int64_t fed = silence.frameCapacity();
    std::int64_t pulled = feed(silence.frameCapacity(), 0);
    for (std::uint32_t count = 1; count > 0; pulled += count) {
        count = feed(0, kSliceFrames);
    }
    std::uint32_t first = 0;
    while (first == 0) {
        first = feed(1, 1);
        ++fed;
    }
    lookAhead_ = fed - pulled * inputStep_ / outputStep_;
    pulled += first;
    for (; fed % inputStep_ != 0; ++fed) {
        pulled += feed(1, kSliceFrames);
    }
    taken_ = 0;
    made_ = pulled - fed / inputStep_ * outputStep_;
}

// The input frames that the stream's first outputFrames frames need.
std::int64_t SampleRateConverter::inputFramesUntil(std::int64_t outputFrames) const noexcept {
    return outputFrames <= 0 ? 0 : (outputFrames - 1) * inputStep_ / outputStep_ + lookAhead_;
}

std::uint32_t SampleRateConverter::inputFramesNeeded(std::uint32_t outputFrames) const noexcept {
    if (!resampler_) {
        return outputFrames;
    }
    const auto until = inputFramesUntil(std::max<std::int64_t>(made_, 0) + outputFrames);
    return outputFrames == 0
               ? 0
               : static_cast<std::uint32_t>(std::max<std::int64_t>(until - taken_, 0));
}

std::uint32_t SampleRateConverter::resample(const AudioBlock& input,
                                            const AudioBlock& output) noexcept {
    std::array<const std::uint8_t*, kMaximumChannels> in{};
    std::array<std::uint8_t*, kMaximumChannels> out{};
    for (std::uint32_t channel = 0; channel < channelsBetween(from_, to_); ++channel) {
        in[channel] = reinterpret_cast<const std::uint8_t*>(input.channels[channel]);
        out[channel] = reinterpret_cast<std::uint8_t*>(output.channels[channel]);
    }
    const int made = swr_convert(resampler_.get(), out.data(), static_cast<int>(output.frameCount),
                                 in.data(), static_cast<int>(input.frameCount));
    return made < 0 ? 0 : static_cast<std::uint32_t>(made);
}

void SampleRateConverter::convert(const AudioBlock& input, const AudioBlock& output) noexcept {
    if (!resampler_) {
        mapChannels(input, output);
        return;
    }
    std::uint32_t inputPosition = 0;
    std::uint32_t outputPosition = 0;
    std::array<float*, kMaximumChannels> in{};
    std::array<float*, kMaximumChannels> out{};
    while (outputPosition < output.frameCount) {
        const bool isBeforeStart = made_ < 0;
        const auto wanted =
            isBeforeStart
                ? std::min(static_cast<std::uint32_t>(std::min<std::int64_t>(-made_, kSliceFrames)),
                           kSliceFrames)
                : std::min(output.frameCount - outputPosition, kSliceFrames);
        // Output from before the start needs the look-ahead of the first frame.
        const auto until = inputFramesUntil(isBeforeStart ? 1 : made_ + wanted);
        const auto taking =
            std::min({static_cast<std::uint32_t>(std::max<std::int64_t>(until - taken_, 0)),
                      input.frameCount - inputPosition, mapped_.frameCapacity()});
        for (std::uint32_t channel = 0; channel < input.channelCount; ++channel) {
            in[channel] = input.channels[channel] + inputPosition;
        }
        for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
            out[channel] = output.channels[channel] + outputPosition;
        }
        AudioBlock source{in.data(), input.channelCount, taking};
        if (input.channelCount > mapped_.format().channelCount) {
            mapChannels(source, mapped_.block(taking));
            source = mapped_.block(taking);
        }
        const AudioBlock target{out.data(), output.channelCount, wanted};
        const auto made = resample(source, isBeforeStart ? discarded_.block(wanted) : target);
        inputPosition += taking;
        taken_ += taking;
        if (made == 0) {
            break;
        }
        made_ += made;
        if (!isBeforeStart) {
            if (output.channelCount > mapped_.format().channelCount) {
                mapChannels({out.data(), mapped_.format().channelCount, made},
                            {out.data(), output.channelCount, made});
            }
            outputPosition += made;
        }
    }
    const auto steps = made_ / outputStep_;
    if (steps > 0) {
        made_ -= steps * outputStep_;
        taken_ -= steps * inputStep_;
    }
}

}  // namespace orvalo
