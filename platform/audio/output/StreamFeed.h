#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/output/WakeSignal.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/audio/signal/RenderSlot.h"

namespace orvalo {

/// What one stream renders: the source while it is connected, silence before and after. The stream
/// and its supervisor share it, so a stream that outlives its owner renders silence.
class StreamFeed {
  public:
    /// supervisor: woken when the stream ends; may be null.
    explicit StreamFeed(std::shared_ptr<WakeSignal> supervisor = nullptr);
    ~StreamFeed();
    StreamFeed(const StreamFeed&) = delete;
    StreamFeed& operator=(const StreamFeed&) = delete;

    /// From now on the stream renders the source. Control threads, one at a time.
    void connect(AudioOutputSource& source);
    /// No call to the source is under way when it returns, and none follows. Control threads, one
    /// at a time; not from the source.
    void disconnect();

    /// Fills block from the source or with silence, inside a RealTimeScope and with denormals
    /// flushed to zero. The stream's render thread.
    void render(const AudioBlock& block) noexcept;
    /// Counts periods that the stream was not rendered in time. Any thread.
    void countXruns(std::uint64_t count) noexcept;
    /// The stream has died, or must be opened again. Any thread.
    void markEnded() noexcept;

    bool hasEnded() const { return ended_.load(std::memory_order_acquire); }
    std::uint64_t xrunCount() const { return xruns_.load(std::memory_order_relaxed); }
    /// How often the stream has rendered.
    std::uint64_t renderCount() const { return renders_.load(std::memory_order_relaxed); }

  private:
    struct Connection;
    RenderSlot<Connection> slot_;
    std::shared_ptr<WakeSignal> supervisor_;
    std::atomic<bool> ended_{false};
    std::atomic<std::uint64_t> xruns_{0};
    std::atomic<std::uint64_t> renders_{0};
};

}  // namespace orvalo
