#pragma once

#include <deque>
#include <mutex>
#include <string>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/OneShot.h"

namespace orvalo {

/// A serial queue. The right to run items, the turn, goes from item to item: work of async() gets
/// it on a thread of the global queue, callers of sync() get it on their own, so that a waiting
/// sync() needs no thread of the pool.
class SerialQueue final : public DispatchQueue {
  public:
    explicit SerialQueue(std::string label);

    void async(WorkItem work) override;
    void sync(WorkItem work) override;

  private:
    struct Entry {
        WorkItem work;            ///< Of async().
        OneShot* turn = nullptr;  ///< Of sync().
    };

    void run(WorkItem& work) noexcept;
    void runWaiting() noexcept;
    bool nextEntry(Entry& entry);
    void passTurn();
    void runWaitingElsewhere();

    std::mutex mutex_;
    std::deque<Entry> entries_;
    bool isTurnTaken_ = false;
};

}  // namespace orvalo
