#include "platform/foundation/SyncCheck.h"

#include "platform/foundation/FatalError.h"

namespace orvalo {

namespace {

constinit thread_local const RunningWork* innermost = nullptr;

}  // namespace

void endForSyncFromOwnWork(const std::string& label) {
    fatalError("sync on the queue '" + label + "' from its own work would never end.");
}

RunningWork::RunningWork(const DispatchQueue& queue) : queue_(&queue), outer_(innermost) {
    innermost = this;
}

RunningWork::~RunningWork() {
    innermost = outer_;
}

bool RunningWork::isOf(const DispatchQueue& queue) {
    for (const auto* running = innermost; running != nullptr; running = running->outer_) {
        if (running->queue_ == &queue) {
            return true;
        }
    }
    return false;
}

}  // namespace orvalo
