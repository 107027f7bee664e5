#include "tests/testing/MainQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"
#include "platform/foundation/Timer.h"

namespace orvalo::testing {

void serveMainQueueUntil(const std::function<bool()>& condition) {
    // Other threads change what the condition looks at without waking the run loop.
    const auto looks = Timer::scheduledTimer(0.001, [](const std::shared_ptr<Timer>&) {});
    const bool held = RunLoop::main()->run(condition, std::chrono::minutes(1));
    looks->invalidate();
    ASSERT_TRUE(held) << "It never came.";
}

void drainMainQueue() {
    bool reached = false;
    DispatchQueue::main()->async([&reached] { reached = true; });
    serveMainQueueUntil([&reached] { return reached; });
}

void serveMainQueueUntilPrinted(const CapturedOutput& output, const std::string& line) {
    serveMainQueueUntil([&] { return std::ranges::count(output.lines(), line) > 0; });
}

}  // namespace orvalo::testing
