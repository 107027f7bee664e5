#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/AudioBlock.h"

struct SwrContext;

namespace orvalo {

/// A streaming conversion of rate and channels from one format to another, by libswresample with a
/// long polyphase filter. One channel becomes many by repetition, many become one by their mean,
/// otherwise channels map by index and missing ones are silent. Made off the render thread, with
/// everything that conversion needs allocated; convert() keeps the render thread's promises.
///
/// No delay: output frame k is the input at the moment k / output rate. So the filter looks ahead:
/// the first call needs some 70 input frames more than the rates' ratio says (when the rate falls,
/// as many output frames' worth), every later one the ratio's share within one frame. Rates count
/// in whole hertz. How the stream is cut into calls does not change a bit of the output.
class SampleRateConverter {
  public:
    SampleRateConverter(const AVAudioFormat& from, const AVAudioFormat& to);
    ~SampleRateConverter();
    SampleRateConverter(const SampleRateConverter&) = delete;
    SampleRateConverter& operator=(const SampleRateConverter&) = delete;

    const AVAudioFormat& inputFormat() const { return from_; }
    const AVAudioFormat& outputFormat() const { return to_; }

    /// How many input frames convert() must be given so that it can fill this many output frames.
    /// At most kMaximumFramesToRender output frames at a time. Render thread.
    std::uint32_t inputFramesNeeded(std::uint32_t outputFrames) const noexcept;

    /// Takes exactly inputFramesNeeded(output.frameCount) frames and fills output wholly; without a
    /// change of rate that is as many frames as output has. Render thread.
    void convert(const AudioBlock& input, const AudioBlock& output) noexcept;

  private:
    void prime();
    std::int64_t inputFramesUntil(std::int64_t outputFrames) const noexcept;
    std::uint32_t resample(const AudioBlock& input, const AudioBlock& output) noexcept;

    AVAudioFormat from_;
    AVAudioFormat to_;
    std::unique_ptr<SwrContext, void (*)(SwrContext*)> resampler_;  // Absent for equal rates.
    // The ratio of the rates in lowest terms.
    std::int64_t inputStep_ = 1;
    std::int64_t outputStep_ = 1;
    std::int64_t lookAhead_ = 0;  // Input frames beyond an output frame's own that it needs.
    // Counted from the stream's start, less whole steps of the ratio.
    std::int64_t taken_ = 0;
    std::int64_t made_ = 0;       // Below 0 while output from before the start is due.
    AVAudioPCMBuffer mapped_;     // Input of one slice with the channels that are resampled.
    AVAudioPCMBuffer discarded_;  // Output from before the start.
};

/// Writes input's channels to output's by the rule of SampleRateConverter; as many frames in both.
/// Render thread.
void mapChannels(const AudioBlock& input, const AudioBlock& output) noexcept;

}  // namespace orvalo
