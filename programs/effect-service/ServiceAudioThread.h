#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/bridge/wire/SharedEvents.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo {

/// The thread that renders the host's quanta: straight from the shared memory into it, with the
/// host's real-time priority where the system grants it.
class ServiceAudioThread {
  public:
    /// Takes the unit's MIDI block. audio must outlive the object.
    ServiceAudioThread(std::shared_ptr<LV2LocalAudioUnit> unit, const SharedAudio& audio);
    /// Ends it after the quantum under way.
    ~ServiceAudioThread();
    ServiceAudioThread(const ServiceAudioThread&) = delete;
    ServiceAudioThread& operator=(const ServiceAudioThread&) = delete;

    /// Puts the values of the control ports into the shared memory, as each quantum does. Any
    /// thread.
    void publishControls() noexcept;
    /// How many MIDI messages found no room since the last call. Any thread.
    std::uint32_t takeLostCount() noexcept { return lost_.exchange(0, std::memory_order_relaxed); }

  private:
    void serve() noexcept;
    void takeScheduling();
    void render() noexcept;

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const SharedAudio& audio_;
    std::atomic<bool> isEnding_{false};
    std::atomic<bool> hasEnded_{false};
    std::atomic<std::uint32_t> lost_{0};
    // The thread's own.
    int policy_ = 0;
    int priority_ = 0;
    std::int64_t start_ = 0;  // The quantum's on the unit's time line.
    std::optional<SharedEventWriter> events_;
    std::thread thread_;
};

}  // namespace orvalo
