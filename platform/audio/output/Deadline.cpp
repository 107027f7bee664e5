#include "platform/audio/output/Deadline.h"

#include <future>
#include <thread>
#include <utility>

namespace orvalo {

bool finishesWithin(std::chrono::milliseconds limit, std::function<void()> work) {
    std::packaged_task<void()> task(std::move(work));
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
