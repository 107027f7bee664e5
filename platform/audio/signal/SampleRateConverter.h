#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/AudioBlock.h"

struct SwrContext;

namespace orvalo {

/// Converts a stream's rate, by libswresample with a long polyphase filter, and its channels, as
/// mapChannels() does. The constructor allocates all that convert() needs.
///
/// There is no delay: output frame k is the input at the time k / output rate. For that the filter
/// looks ahead: the first call needs some 70 input frames more than the ratio of the rates gives
/// (or 70 output frames' worth when the rate falls), each later call the ratio within one frame.
/// Rates are rounded to whole hertz. The sizes of the calls do not change a bit of the output.
class SampleRateConverter {
  public:
    SampleRateConverter(const AVAudioFormat& from, const AVAudioFormat& to);
    ~SampleRateConverter();
    SampleRateConverter(const SampleRateConverter&) = delete;
    SampleRateConverter& operator=(const SampleRateConverter&) = delete;

    const AVAudioFormat& inputFormat() const { return from_; }
    const AVAudioFormat& outputFormat() const { return to_; }

    /// The input frames that convert() needs to make this many output frames, at most
    /// kMaximumFramesToRender. Render thread.
    std::uint32_t inputFramesNeeded(std::uint32_t outputFrames) const noexcept;

    /// Converts exactly inputFramesNeeded(output.frameCount) input frames and fills output. Render
    /// thread.
    void convert(const AudioBlock& input, const AudioBlock& output) noexcept;

  private:
    void prime();
    std::int64_t inputFramesUntil(std::int64_t outputFrames) const noexcept;
    std::uint32_t resample(const AudioBlock& input, const AudioBlock& output) noexcept;

    AVAudioFormat from_;
    AVAudioFormat to_;
    std::unique_ptr<SwrContext, void (*)(SwrContext*)> resampler_;  // Null for equal rates.
    // The ratio of the rates in lowest terms.
    std::int64_t inputStep_ = 1;
    std::int64_t outputStep_ = 1;
    std::int64_t lookAhead_ = 0;  // Input frames that an output frame needs after its own.
    // Frames since the stream's start, less whole steps of the ratio.
    std::int64_t taken_ = 0;
    std::int64_t made_ = 0;       // Below 0 while output from before the start is due.
    AVAudioPCMBuffer mapped_;     // Input of one slice, mapped to the resampled channels.
    AVAudioPCMBuffer discarded_;  // Output from before the start.
};

}  // namespace orvalo
