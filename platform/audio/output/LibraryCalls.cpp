#include "platform/audio/output/LibraryCalls.h"

#include <csignal>
#include <memory>
#include <thread>
#include <utility>

namespace orvalo {

std::packaged_task<void()> LibraryCalls::inTurn(std::function<void()> work) {
    ++pendingCount_;
    // Counts down however the work ends, and when its thread cannot be started.
    std::shared_ptr<void> pending(nullptr, [this](void*) { --pendingCount_; });
    return std::packaged_task<void()>(
        [this, work = std::move(work), pending = std::move(pending)]() mutable {
            // libjack writes to the socket of a server that may have died.
            sigset_t pipeSignal;
            sigemptyset(&pipeSignal);
            sigaddset(&pipeSignal, SIGPIPE);
            pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
            const auto counted = std::move(pending);
            const std::lock_guard lock(turn_);
            // Destroys what the work owns before the turn ends.
            const auto current = std::move(work);
            current();
        });
}

std::future<void> LibraryCalls::start(std::function<void()> work) {
    auto task = inTurn(std::move(work));
    auto end = task.get_future();
    std::thread(std::move(task)).detach();
    return end;
}

bool LibraryCalls::finishWithin(std::chrono::milliseconds limit, std::function<void()> work) {
    auto task = inTurn(std::move(work));
    auto result = task.get_future();
    std::thread thread(std::move(task));
    if (result.wait_for(limit) != std::future_status::ready) {
        thread.detach();
        return false;
    }
    thread.join();
    result.get();
    return true;
}

}  // namespace orvalo
