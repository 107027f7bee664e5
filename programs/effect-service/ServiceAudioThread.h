#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/bridge/wire/SharedEvents.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo {

/// The thread that renders the host's quanta from the shared memory into it, with the real-time
/// priority that the host requests, where the system grants it.
class ServiceAudioThread {
  public:
    /// Sets the unit's MIDI block. audio must outlive the object.
    ServiceAudioThread(std::shared_ptr<LV2LocalAudioUnit> unit, const SharedAudio& audio);
    /// Ends the thread after the current quantum.
    ~ServiceAudioThread();
    ServiceAudioThread(const ServiceAudioThread&) = delete;
    ServiceAudioThread& operator=(const ServiceAudioThread&) = delete;

    /// Copies the values of the control ports into the shared memory, as each quantum does. Any
    /// thread.
    void publishControls() noexcept;
    /// How many MIDI messages did not fit since the last call. Any thread.
    std::uint32_t takeLostCount() noexcept { return lost_.exchange(0, std::memory_order_relaxed); }

  private:
    void serve() noexcept;
    void render() noexcept;

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const SharedAudio& audio_;
    std::atomic<bool> isEnding_{false};
    std::atomic<bool> hasEnded_{false};
    std::atomic<std::uint32_t> lost_{0};
    // Used by the thread alone.
    std::int64_t start_ = 0;  // The sample time of the quantum.
    std::optional<SharedEventWriter> events_;
    std::thread thread_;
};

}  // namespace orvalo
