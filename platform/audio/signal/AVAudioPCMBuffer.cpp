#include "platform/audio/signal/AVAudioPCMBuffer.h"

#include "platform/foundation/FatalError.h"

namespace orvalo {

AVAudioPCMBuffer::AVAudioPCMBuffer(const AVAudioFormat& pcmFormat, std::uint32_t frameCapacity)
    : format_(pcmFormat), frameCapacity_(frameCapacity) {
    if (pcmFormat.channelCount == 0 || pcmFormat.channelCount > kMaximumChannels) {
        fatalError("An audio buffer has 1 to 32 channels.");
    }
    samples_.resize(std::size_t{frameCapacity} * pcmFormat.channelCount);
    channels_.reserve(pcmFormat.channelCount);
    for (std::size_t channel = 0; channel < pcmFormat.channelCount; ++channel) {
        channels_.push_back(samples_.data() + channel * frameCapacity);
    }
}

AudioBlock AVAudioPCMBuffer::block(std::uint32_t from, std::uint32_t count,
                                   std::array<float*, kMaximumChannels>& pointers) const {
    if (from > frameCapacity_ || count > frameCapacity_ - from) {
        fatalError("A view reaches beyond its audio buffer.");
    }
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
        pointers[channel] = channels_[channel] + from;
    }
    return {pointers.data(), format_.channelCount, count};
}

AudioBlock AVAudioPCMBuffer::block(std::uint32_t count) const {
    if (count > frameCapacity_) {
        fatalError("A view reaches beyond its audio buffer.");
    }
    return {channels_.data(), format_.channelCount, count};
}

}  // namespace orvalo
