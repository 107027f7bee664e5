#include "tests/testing/MainQueue.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/foundation/DispatchQueue.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

void drainMainQueue() {
    bool reached = false;
    DispatchQueue::main()->async([&reached] { reached = true; });
    ASSERT_TRUE(waitUntil([&reached] { return reached; }));
}

void serveMainQueueUntilPrinted(const CapturedOutput& output, const std::string& line) {
    ASSERT_TRUE(pollUntil([&] { return std::ranges::count(output.lines(), line) > 0; })) << line;
}

}  // namespace orvalo::testing
