#pragma once

#include <lv2/worker/worker.h>
#include <semaphore.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/audio/lv2/ByteRing.h"

namespace orvalo {

/// The worker of one instance: does requests from run() on its own thread, one at a time, and
/// delivers the responses on the render thread.
class LV2Worker {
  public:
    LV2Worker();
    ~LV2Worker();
    LV2Worker(const LV2Worker&) = delete;
    LV2Worker& operator=(const LV2Worker&) = delete;

    /// For instantiation: queues requests for the thread, lock-free.
    LV2_Worker_Schedule& schedule() { return schedule_; }
    /// For restoring state off the render thread: does requests at once, in the call.
    LV2_Worker_Schedule& immediateSchedule() { return immediateSchedule_; }

    /// Starts the thread; does nothing when worker is null or does no work.
    void start(LV2_Handle instance, const LV2_Worker_Interface* worker);
    /// Stops the thread after the current request and drops the waiting ones. The instance must not
    /// be rendering.
    void stop();

    /// Delivers the responses and calls end_run(). Render thread, after each run().
    void finishCycle() noexcept;

  private:
    static LV2_Worker_Status scheduleWork(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                          const void* data);
    static LV2_Worker_Status workNow(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                     const void* data);
    static LV2_Worker_Status respond(LV2_Worker_Respond_Handle handle, std::uint32_t size,
                                     const void* data);
    void serve();

    LV2_Worker_Schedule schedule_{this, scheduleWork};
    LV2_Worker_Schedule immediateSchedule_{this, workNow};
    LV2_Handle instance_ = nullptr;
    const LV2_Worker_Interface* worker_ = nullptr;
    ByteRing requests_;
    ByteRing responses_;
    std::vector<std::byte> request_;   // Worker thread only.
    std::vector<std::byte> response_;  // Render thread only.
    std::mutex work_;                  // Held during the instance's work().
    sem_t requested_{};
    std::atomic<bool> isStopping_{false};
    std::thread thread_;
};

}  // namespace orvalo
