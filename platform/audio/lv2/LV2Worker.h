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

/// The worker of one instance: jobs that its run() schedules are done on a thread of their own, one
/// at a time, and their answers come back to the render thread.
class LV2Worker {
  public:
    LV2Worker();
    ~LV2Worker();
    LV2Worker(const LV2Worker&) = delete;
    LV2Worker& operator=(const LV2Worker&) = delete;

    /// The feature for instantiation: jobs go to the thread, lock-free.
    LV2_Worker_Schedule& schedule() { return schedule_; }
    /// The feature for state restoring, off the render thread: jobs are done at once, in the call.
    LV2_Worker_Schedule& immediateSchedule() { return immediateSchedule_; }

    /// Starts the thread, when the instance has a worker at all (worker may be null).
    void start(LV2_Handle instance, const LV2_Worker_Interface* worker);
    /// Ends the thread after the job under way; jobs that still wait are dropped. The instance must
    /// not run any more.
    void stop();

    /// Hands the answers to the instance and ends its cycle. Render thread, after each run().
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
    std::vector<std::byte> request_;   // The worker thread's.
    std::vector<std::byte> response_;  // The render thread's.
    std::mutex work_;                  // Held while the instance's work() is under way.
    sem_t requested_{};
    std::atomic<bool> isStopping_{false};
    std::thread thread_;
};

}  // namespace orvalo
