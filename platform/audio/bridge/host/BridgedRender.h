#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/RenderSession.h"
#include "platform/audio/bridge/host/WetDryFader.h"
#include "platform/audio/signal/RenderSlot.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// What the render thread does for an effect in a process of its own: hands each quantum over,
/// waits for the answer for a bounded time, and passes the input through where there is none. The
/// sessions come and go with the processes.
class BridgedRender {
  public:
    /// midiBlock: gets the effect's MIDI, and outlives the object; midiOutputCount: events of
    /// higher cables are dropped.
    BridgedRender(RenderSlot<AUMIDIOutputEventBlock>& midiBlock, std::uint32_t midiOutputCount,
                  const BridgeLimits& limits)
        : midiBlock_(midiBlock), midiOutputCount_(midiOutputCount), limits_(limits) {}

    /// From now on quanta go there. Supervisor's thread, without a session.
    void connect(std::unique_ptr<RenderSession> session);
    /// Ends the session's wait, if one is under way, and takes the session out; null without one.
    /// Supervisor's thread.
    std::unique_ptr<RenderSession> disconnect();
    /// No session will come any more: offline rendering stops waiting for one. Any thread.
    void giveUp();

    /// How long a quantum is. Never while render() may be called.
    void setSampleRate(double sampleRate);
    /// Whether time does not matter: offline rendering waits for late answers and for sessions.
    /// Never while render() may be called.
    void setOffline(bool isOffline) { isOffline_.store(isOffline, std::memory_order_relaxed); }

    /// As AUAudioUnit's, as last reported. Any thread.
    std::uint32_t latency() const { return latency_.load(std::memory_order_relaxed); }
    /// How many quanta passed through because the process was late. Any thread.
    std::uint64_t lateQuantumCount() const { return late_.load(std::memory_order_relaxed); }

    /// As AUAudioUnit's.
    void render(const AudioBlock& input, const AudioBlock& output) noexcept;

  private:
    /// Holds no session meanwhile: who exchanges it waits for accesses to end.
    void awaitSession() noexcept;
    bool hasLiveSession() noexcept;
    bool process(RenderSession& session, const AudioBlock& input,
                 const AudioBlock& output) noexcept;
    void handOver(RenderSession& session, const AudioBlock& input) noexcept;
    void takeReports(RenderSession& session) noexcept;
    Futex::Deadline deadline(std::uint32_t frameCount) const noexcept;
    bool isOffline() const noexcept { return isOffline_.load(std::memory_order_relaxed); }

    RenderSlot<AUMIDIOutputEventBlock>& midiBlock_;
    const std::uint32_t midiOutputCount_;
    const BridgeLimits limits_;
    RenderSlot<RenderSession> session_;
    /// Changes with every session that comes, and when none will: what offline rendering waits on.
    std::atomic<std::uint32_t> sessionNumber_{0};
    std::atomic<bool> isHopeless_{false};
    std::atomic<bool> isOffline_{false};
    std::atomic<double> sampleRate_{48000.0};
    std::atomic<std::uint32_t> latency_{0};
    std::atomic<std::uint64_t> late_{0};

    // The render thread's.
    WetDryFader fader_;
    std::int64_t sampleTime_ = 0;  // Frames rendered so far.
};

}  // namespace orvalo
