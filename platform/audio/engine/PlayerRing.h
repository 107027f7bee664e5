#pragma once

#include <atomic>
#include <cstdint>

#include "platform/audio/signal/AVAudioPCMBuffer.h"

namespace orvalo {

/// Decoded audio on its way from one decoding thread to one render thread. Positions count frames
/// since the ring was made; neither side waits for the other.
class PlayerRing {
  public:
    /// Holds half a second or more: what a quantum of an output of 8 kHz or above asks for.
    explicit PlayerRing(const AVAudioFormat& format);

    const AVAudioFormat& format() const { return buffer_.format(); }
    std::uint32_t capacity() const { return buffer_.frameCapacity(); }
    /// How many frames have been written; the decoding thread's own position.
    std::uint64_t written() const noexcept { return written_.load(std::memory_order_acquire); }
    /// How many frames have been read. Sequentially consistent: see PlayerPlayback's wake-up.
    std::uint64_t consumed() const noexcept { return consumed_.load(std::memory_order_seq_cst); }
    std::uint32_t writable() const noexcept {
        return capacity() - static_cast<std::uint32_t>(written() - consumed());
    }

    /// Decoding thread: takes the block, which must not be longer than writable().
    void write(const AudioBlock& block) noexcept;
    /// Render thread: fills the block's first frames with what is there; returns how many.
    std::uint32_t read(const AudioBlock& block) noexcept;

  private:
    AVAudioPCMBuffer buffer_;
    alignas(64) std::atomic<std::uint64_t> written_ = 0;
    alignas(64) std::atomic<std::uint64_t> consumed_ = 0;
};

}  // namespace orvalo
