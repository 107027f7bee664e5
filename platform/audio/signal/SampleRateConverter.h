#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

struct SwrContext;

namespace orvalo {

/// A streaming conversion of rate and channels from one format to another, by libswresample with a
/// long polyphase filter. One channel becomes many by repetition, many become one by their mean,
/// otherwise channels map by index and missing ones are silent. Made off the render thread, with
/// everything that conversion needs allocated; convert() keeps the render thread's promises.
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
    AVAudioFormat from_;
    AVAudioFormat to_;
    std::unique_ptr<SwrContext, void (*)(SwrContext*)> resampler_;
};

/// Writes input's channels to output's by the rule of SampleRateConverter; as many frames in both.
/// Render thread.
void mapChannels(const AudioBlock& input, const AudioBlock& output) noexcept;

}  // namespace orvalo
