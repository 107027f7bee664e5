#include "platform/audio/engine/PlayerStream.h"

namespace orvalo {

PlayerStream::PlayerStream(std::shared_ptr<PlayerRing> ring, const AVAudioFormat& outputFormat)
    : ring_(std::move(ring)),
      converter_(ring_->format() == outputFormat
                     ? nullptr
                     : std::make_unique<SampleRateConverter>(ring_->format(), outputFormat)),
      largestDemand_(ring_->maximumFrames()),
      input_(ring_->format(), 1) {
    if (converter_) {
        // The first demand is the largest, as the filter is empty; later ones may round up by one.
        largestDemand_ = converter_->inputFramesNeeded(ring_->maximumFrames()) + 1;
        input_ = AVAudioPCMBuffer(ring_->format(), largestDemand_);
    }
}

bool PlayerStream::render(const AudioBlock& output) noexcept {
    if (!converter_) {
        return readOrClear(output);
    }
    const AudioBlock input = input_.block(demand(output.frameCount));
    const bool complete = readOrClear(input);
    converter_->convert(input, output);
    return complete;
}

bool PlayerStream::readOrClear(const AudioBlock& block) noexcept {
    const auto count = ring_->read(block);
    silence(AudioBlockPart(block, count, block.frameCount - count).block());
    return count == block.frameCount;
}

}  // namespace orvalo
