#pragma once

#include <string>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

/// Ends the program: work of the queue with this label waits for the queue.
[[noreturn]] void endForSyncFromOwnWork(const std::string& label);

/// Notes, for its life, that the calling thread runs work of a queue, inside whatever work of
/// other queues it runs already.
class RunningWork {
  public:
    explicit RunningWork(const DispatchQueue& queue);
    ~RunningWork();
    RunningWork(const RunningWork&) = delete;
    RunningWork& operator=(const RunningWork&) = delete;

    /// Whether the calling thread runs work of the queue.
    static bool isOf(const DispatchQueue& queue);

  private:
    const DispatchQueue* queue_;
    const RunningWork* outer_;
};

}  // namespace orvalo
