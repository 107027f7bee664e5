#pragma once

#include <condition_variable>
#include <mutex>

namespace orvalo {

/// One thread waits for one signal of another. The waiting thread may destroy the object as soon as
/// wait() has returned; std::binary_semaphore::release() may still access it then.
class OneShot {
  public:
    void signal() {
        // Under the lock: wait() must not return before the notification has ended.
        const std::lock_guard lock(mutex_);
        isSignalled_ = true;
        condition_.notify_one();
    }

    void wait() {
        std::unique_lock lock(mutex_);
        condition_.wait(lock, [this] { return isSignalled_; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable condition_;
    bool isSignalled_ = false;
};

}  // namespace orvalo
