#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/audio/output/AudioOutput.h"
#include "platform/audio/output/Wakeup.h"
#include "platform/audio/signal/AudioBlock.h"
#include "platform/audio/signal/RenderSlot.h"

namespace orvalo {

/// What stands between one stream's render thread and the source: a stream pulls silence until the
/// gate is opened and after it is closed, whatever the sound server does meanwhile. Held by both
/// sides, so that a stream which outlives its owner finds a closed gate.
class RenderGate {
  public:
    /// supervisor: is woken when the stream ends; may be null.
    explicit RenderGate(std::shared_ptr<Wakeup> supervisor = nullptr);
    ~RenderGate();
    RenderGate(const RenderGate&) = delete;
    RenderGate& operator=(const RenderGate&) = delete;

    /// Lets the stream pull from the source. Control threads, one at a time.
    void open(AudioOutputSource& source);
    /// No render call is under way when it returns, and none follows. Control threads, one at a
    /// time; not from the source.
    void close();

    /// Fills block from the source, or with silence, as a render thread has to. One thread.
    void render(const AudioBlock& block) noexcept;
    /// Counts periods that the stream has not been served in time. Any thread.
    void countXruns(std::uint64_t count) noexcept;
    /// The stream will call no more, or is to be opened anew. Any thread.
    void end() noexcept;

    bool hasEnded() const { return ended_.load(std::memory_order_acquire); }
    std::uint64_t xrunCount() const { return xruns_.load(std::memory_order_relaxed); }
    /// How often the stream has rendered: its pulse.
    std::uint64_t renderCount() const { return renders_.load(std::memory_order_relaxed); }

  private:
    struct Pull;
    RenderSlot<Pull> slot_;
    std::shared_ptr<Wakeup> supervisor_;
    std::atomic<bool> ended_{false};
    std::atomic<std::uint64_t> xruns_{0};
    std::atomic<std::uint64_t> renders_{0};
};

}  // namespace orvalo
