#pragma once

#include <atomic>
#include <cstdint>

#include "platform/audio/signal/AVAudioPCMBuffer.h"

namespace orvalo {

/// A ring of decoded audio from one decoding thread to one render thread, without locks. Positions
/// count frames since the ring was made.
class PlayerRing {
  public:
    /// Holds at least half a second: enough for a quantum of an output of 8 kHz. maximumFrames: the
    /// most frames that are rendered at once; the ring holds twice as many.
    PlayerRing(const AVAudioFormat& format, std::uint32_t maximumFrames);

    const AVAudioFormat& format() const { return buffer_.format(); }
    std::uint32_t capacity() const { return buffer_.frameCapacity(); }
    std::uint32_t maximumFrames() const { return maximumFrames_; }
    /// Frames written by the decoding thread.
    std::uint64_t written() const noexcept { return written_.load(std::memory_order_acquire); }
    /// Frames read by the render thread. Sequentially consistent, for the wake-up in
    /// AVAudioPlayerNode::Playback::render().
    std::uint64_t consumed() const noexcept { return consumed_.load(std::memory_order_seq_cst); }
    std::uint32_t writable() const noexcept {
        return capacity() - static_cast<std::uint32_t>(written() - consumed());
    }

    /// Appends the block, of at most writable() frames. Decoding thread.
    void write(const AudioBlock& block) noexcept;
    /// Fills the first frames of the block, as many as are available; returns their number. Render
    /// thread.
    std::uint32_t read(const AudioBlock& block) noexcept;

  private:
    AVAudioPCMBuffer buffer_;
    const std::uint32_t maximumFrames_;
    alignas(64) std::atomic<std::uint64_t> written_ = 0;
    alignas(64) std::atomic<std::uint64_t> consumed_ = 0;
};

}  // namespace orvalo
