#include "platform/audio/output/Turns.h"

#include <future>
#include <thread>
#include <utility>

namespace orvalo {

bool Turns::finishWithin(std::chrono::milliseconds limit, std::function<void()> work) {
    std::packaged_task<void()> task([this, work = std::move(work)] {
        const std::lock_guard lock(turn_);
        work();
    });
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
