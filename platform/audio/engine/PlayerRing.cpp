#include "platform/audio/engine/PlayerRing.h"

#include <algorithm>
#include <bit>

namespace orvalo {

namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);  // The render thread never locks.

std::uint32_t capacityFor(const AVAudioFormat& format, std::uint32_t maximumFrames) {
    // The longest quantum of an output of 8 kHz with 64 frames for the converter's filter, and one
    // decoded chunk.
    constexpr double slowestOutput = 8000.0;
    const auto largestDemand = (kMaximumFramesToRender + 64) * format.sampleRate / slowestOutput;
    // While the frames of one call are rendered, those of the next are decoded.
    return std::bit_ceil(
        std::max(static_cast<std::uint32_t>(largestDemand) + kMaximumFramesToRender + 64,
                 2 * maximumFrames));
}

}  // namespace

PlayerRing::PlayerRing(const AVAudioFormat& format, std::uint32_t maximumFrames)
    : buffer_(format, capacityFor(format, maximumFrames)), maximumFrames_(maximumFrames) {}

void PlayerRing::write(const AudioBlock& block) noexcept {
    const auto position = written_.load(std::memory_order_relaxed);
    const auto start = static_cast<std::uint32_t>(position & (capacity() - 1));
    const auto first = std::min(block.frameCount, capacity() - start);
    for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
        float* ring = buffer_.floatChannelData()[channel];
        const float* source = block.channels[channel];
        std::copy_n(source, first, ring + start);
        std::copy_n(source + first, block.frameCount - first, ring);
    }
    written_.store(position + block.frameCount, std::memory_order_release);
}

std::uint32_t PlayerRing::read(const AudioBlock& block) noexcept {
    const auto position = consumed_.load(std::memory_order_relaxed);
    const auto count =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(block.frameCount, written() - position));
    const auto start = static_cast<std::uint32_t>(position & (capacity() - 1));
    const auto first = std::min(count, capacity() - start);
    for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
        const float* ring = buffer_.floatChannelData()[channel];
        float* target = block.channels[channel];
        std::copy_n(ring + start, first, target);
        std::copy_n(ring, count - first, target + first);
    }
    consumed_.store(position + count, std::memory_order_seq_cst);
    return count;
}

}  // namespace orvalo
