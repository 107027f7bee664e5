#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/DelayedInput.h"
#include "platform/audio/bridge/host/RenderSession.h"
#include "platform/audio/bridge/host/WetDryFader.h"
#include "platform/audio/signal/RenderSlot.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// The render thread's part of a bridged effect: hands each quantum over to the service, waits for
/// the answer for a bounded time, and outputs the dry signal without one, delayed by the effect's
/// latency. Offline, when a service ends, only the span that it did not finish is dry, and the next
/// service's latency. Each service has a session.
class BridgedRender {
  public:
    /// midiBlock: gets the effect's MIDI, and outlives the object; midiOutputCount: events of
    /// higher cables are dropped; inputChannelCount: the effect's.
    BridgedRender(RenderSlot<AUMIDIOutputEventBlock>& midiBlock, std::uint32_t midiOutputCount,
                  std::uint32_t inputChannelCount, const BridgeLimits& limits)
        : midiBlock_(midiBlock),
          midiOutputCount_(midiOutputCount),
          limits_(limits),
          delayed_(inputChannelCount) {}

    /// Sets the session for the next quanta, while there is none. Supervisor's thread.
    void connect(std::unique_ptr<RenderSession> session);
    /// Ends a wait for an answer and removes the session; null without one. Supervisor's thread.
    std::unique_ptr<RenderSession> disconnect();
    /// Offline rendering does not wait for a session while the effect is given up. Any thread.
    void setGivenUp(bool isGivenUp);
    /// The output is dry until the service is prepared to play; it is at first. Any thread.
    void setPrepared(bool isPrepared) { isPrepared_.store(isPrepared, std::memory_order_release); }

    /// Determines the duration of a quantum. Never during render().
    void setSampleRate(double sampleRate);
    /// Offline rendering waits for late answers and for sessions. Never during render().
    void setOffline(bool isOffline) { isOffline_.store(isOffline, std::memory_order_relaxed); }
    bool isOffline() const noexcept { return isOffline_.load(std::memory_order_relaxed); }

    /// AUAudioUnit::maximumFramesToRender(). Any thread.
    std::uint32_t maximumFrames() const noexcept {
        return isOffline() ? kMaximumOfflineFrames : kMaximumFramesToRender;
    }

    /// AUAudioUnit::latency(). Any thread.
    std::uint32_t latency() const { return latency_.load(std::memory_order_relaxed); }
    /// AUAudioUnit::latencyAfterSpan(). Never during render().
    std::uint32_t latencyAfterSpan(std::uint32_t span) const { return latencies_.at(span); }
    /// How many quanta were dry because the service was late. Any thread.
    std::uint64_t lateQuantumCount() const { return late_.load(std::memory_order_relaxed); }

    /// AUAudioUnit::render().
    void render(const AudioBlock& input, const AudioBlock& output) noexcept;

  private:
    /// The part of the current render() that is not rendered yet.
    struct Rest {
        const AudioBlock& whole;  ///< The input.
        AudioBlock input;
        AudioBlock output;
        std::uint32_t from;  ///< Where it starts in the whole.
    };

    /// Renders the first frames, and returns how many: fewer than all when the service ends.
    std::uint32_t renderFirst(const Rest& rest) noexcept;
    /// Holds no RenderSlot::Access while it waits: exchange() would wait for it.
    void awaitSession() noexcept;
    bool hasLiveSession() noexcept;
    /// Renders the first frames with the service, and returns how many: all, or without an answer
    /// those that the service had rendered when it ended.
    std::uint32_t process(RenderSession& session, const Rest& rest) noexcept;
    /// Writes frames of the rest dry.
    void writeDry(const Rest& rest, std::uint32_t from, std::uint32_t frameCount) noexcept;
    /// Writes frames of the rest wet: those of the session's output.
    void writeWet(const RenderSession& session, const Rest& rest, std::uint32_t from,
                  std::uint32_t frameCount) noexcept;
    void handOver(RenderSession& session, const AudioBlock& input) const noexcept;
    void readAnswer(RenderSession& session) noexcept;
    /// Sets the latency from that span of the current render() on.
    void setLatency(std::uint32_t span, std::uint32_t latency) noexcept;
    Futex::Deadline deadline(std::uint32_t frameCount) const noexcept;

    RenderSlot<AUMIDIOutputEventBlock>& midiBlock_;
    const std::uint32_t midiOutputCount_;
    const BridgeLimits limits_;
    RenderSlot<RenderSession> session_;
    /// The futex word of awaitSession(): changes with connect() and setGivenUp().
    std::atomic<std::uint32_t> sessionNumber_{0};
    std::atomic<bool> hasGivenUp_{false};
    std::atomic<bool> isPrepared_{true};
    std::atomic<bool> isOffline_{false};
    std::atomic<double> sampleRate_{48000.0};
    std::atomic<std::uint32_t> latency_{0};
    std::atomic<std::uint64_t> late_{0};

    // Used by the render thread alone.
    WetDryFader fader_;
    DelayedInput delayed_;
    std::uint32_t span_ = 0;  // Of the current render(), where the current hand-over starts.
    std::array<std::uint32_t, kMaximumOfflineFrames / kMaximumFramesToRender> latencies_{};
    std::int64_t sampleTime_ = 0;  // Frames rendered so far.
};

}  // namespace orvalo
