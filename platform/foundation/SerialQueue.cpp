#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/OneShot.h"

namespace orvalo {

namespace {

/// Records, for its life, that the calling thread runs work of a queue, possibly inside work of
/// other queues.
class RunningWork {
  public:
    explicit RunningWork(const DispatchQueue& queue) : queue_(&queue), outer_(innermost) {
        innermost = this;
    }
    ~RunningWork() { innermost = outer_; }
    RunningWork(const RunningWork&) = delete;
    RunningWork& operator=(const RunningWork&) = delete;

    /// Whether the calling thread runs work of the queue.
    static bool isOf(const DispatchQueue& queue) {
        const auto* running = innermost;
        while (running != nullptr && running->queue_ != &queue) {
            running = running->outer_;
        }
        return running != nullptr;
    }

  private:
    static inline constinit thread_local const RunningWork* innermost = nullptr;

    const DispatchQueue* queue_;
    const RunningWork* outer_;
};

/// A serial queue. A GThreadPool of one thread also keeps the order, but sync() would have to wait
/// for that thread. Here the right to run items, the turn, passes from item to item: async() work
/// gets it on a thread of the global queue, callers of sync() get it on their own thread.
class SerialQueue final : public DispatchQueue {
  public:
    explicit SerialQueue(std::string label) : DispatchQueue(std::move(label)) {}

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

void SerialQueue::async(WorkItem work) {
    bool wasTaken = false;
    {
        const std::lock_guard lock(mutex_);
        entries_.push_back({std::move(work), nullptr});
        wasTaken = std::exchange(isTurnTaken_, true);
    }
    if (!wasTaken) {
        runWaitingElsewhere();
    }
}

void SerialQueue::sync(WorkItem work) {
    if (RunningWork::isOf(*this)) {
        endForSyncFromOwnWork();
    }
    // The work may drop the caller's reference.
    const auto self = shared(this);
    OneShot turn;
    bool wasTaken = false;
    {
        const std::lock_guard lock(mutex_);
        wasTaken = std::exchange(isTurnTaken_, true);
        if (wasTaken) {
            entries_.push_back({{}, &turn});
        }
    }
    if (wasTaken) {
        turn.wait();
    }
    run(work);
    passTurn();
}

void SerialQueue::run(WorkItem& work) noexcept {
    const RunningWork running(*this);
    work();
    work.reset();
}

/// The oldest entry. False when nothing waits, or when a waiting sync() was given the turn.
bool SerialQueue::nextEntry(Entry& entry) {
    const std::lock_guard lock(mutex_);
    if (entries_.empty()) {
        isTurnTaken_ = false;
        return false;
    }
    entry = std::move(entries_.front());
    entries_.pop_front();
    if (entry.turn != nullptr) {
        entry.turn->signal();
        return false;
    }
    return true;
}

void SerialQueue::runWaiting() noexcept {
    for (Entry entry; nextEntry(entry);) {
        run(entry.work);
    }
}

void SerialQueue::passTurn() {
    {
        const std::lock_guard lock(mutex_);
        if (entries_.empty()) {
            isTurnTaken_ = false;
            return;
        }
        if (auto* turn = entries_.front().turn) {
            entries_.pop_front();
            turn->signal();
            return;
        }
    }
    runWaitingElsewhere();
}

void SerialQueue::runWaitingElsewhere() {
    global()->async([self = shared(this)] { self->runWaiting(); });
}

}  // namespace

std::shared_ptr<DispatchQueue> DispatchQueue::serial(std::string label) {
    return std::make_shared<SerialQueue>(std::move(label));
}

}  // namespace orvalo
