#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Planar float audio in memory, frameCapacity frames of each channel, silent when new.
class AVAudioPCMBuffer {
  public:
    AVAudioPCMBuffer(const AVAudioFormat& pcmFormat, std::uint32_t frameCapacity);
    AVAudioPCMBuffer(const AVAudioPCMBuffer&) = delete;
    AVAudioPCMBuffer& operator=(const AVAudioPCMBuffer&) = delete;
    AVAudioPCMBuffer(AVAudioPCMBuffer&&) = default;
    AVAudioPCMBuffer& operator=(AVAudioPCMBuffer&&) = default;
    ~AVAudioPCMBuffer() = default;

    const AVAudioFormat& format() const { return format_; }
    std::uint32_t frameCapacity() const { return frameCapacity_; }
    /// The samples of each channel.
    float* const* floatChannelData() const { return channels_.data(); }
    /// A view of frames [from, from + count), which must lie within frameCapacity. pointers holds
    /// the view's channel pointers.
    AudioBlock block(std::uint32_t from, std::uint32_t count,
                     std::array<float*, kMaximumChannels>& pointers) const;
    /// A view of the first count frames.
    AudioBlock block(std::uint32_t count) const;

    std::uint32_t frameLength = 0;  ///< The number of valid frames.

  private:
    AVAudioFormat format_;
    std::uint32_t frameCapacity_;
    std::vector<float> samples_;
    std::vector<float*> channels_;
};

}  // namespace orvalo
