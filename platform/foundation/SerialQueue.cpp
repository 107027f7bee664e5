#include "platform/foundation/SerialQueue.h"

#include <utility>

#include "platform/foundation/SyncCheck.h"

namespace orvalo {

SerialQueue::SerialQueue(std::string label) : DispatchQueue(std::move(label)) {}

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
        endForSyncFromOwnWork(label());
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

/// The oldest entry, unless its waiting caller was given the turn or nothing waits.
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

std::shared_ptr<DispatchQueue> DispatchQueue::serial(std::string label) {
    return std::make_shared<SerialQueue>(std::move(label));
}

}  // namespace orvalo
