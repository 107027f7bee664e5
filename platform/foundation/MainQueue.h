#pragma once

#include <atomic>
#include <cstdint>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/MainQueueStore.h"

namespace orvalo {

/// The main queue over the default main context: one source, one item a turn. A submission costs a
/// system call only when the run loop has gone, or is about to go, to sleep.
class MainQueue final : public DispatchQueue {
  public:
    MainQueue();
    ~MainQueue() override;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    MainQueue(MainQueue&&) = delete;
    MainQueue& operator=(MainQueue&&) = delete;

    void async(WorkItem work) override;
    void sync(WorkItem work) override;

  private:
    struct Source;

    MainQueueNode* takeNode();
    void giveBack(MainQueueNode& node);
    void wake() noexcept;
    bool isReady() noexcept;
    bool isReadyOrSleeps() noexcept;
    void runOne() noexcept;

    MainQueuePool pool_;
    MainQueueStore store_{*pool_.take()};
    int wakeDescriptor_;
    /// Whether the run loop will look at the queue again without being woken.
    std::atomic<bool> isAwake_{false};
    std::atomic<std::uint64_t> dropped_{0};
    GSourcePointer source_;
};

}  // namespace orvalo
