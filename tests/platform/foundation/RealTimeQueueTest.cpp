#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RealTimeScope.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using orvalo::testing::CapturedOutput;
using orvalo::testing::waitUntil;

constexpr int room = 16'384;

/// Submits counting closures from a thread inside a RealTimeScope.
void submitInRealTime(int items, int& runs) {
    std::thread([&] {
        const RealTimeScope scope;
        for (int item = 0; item < items; ++item) {
            DispatchQueue::main()->async([&runs, item] { runs += runs == item ? 1 : 0; });
        }
    }).join();
}

std::string dropped(int items) {
    return "The main queue was full: " + std::to_string(items) +
           " items from the render thread were dropped.";
}

TEST(MainQueueInRealTime, DoesNotAllocate) {
    int runs = 0;
    submitInRealTime(room, runs);
    EXPECT_TRUE(waitUntil([&] { return runs == room; }));
}

TEST(MainQueueInRealTime, DropsAndReportsItemsBeyondTheLimit) {
    const CapturedOutput output(2);
    for (const int surplus : {5, 1}) {
        int runs = 0;
        submitInRealTime(room + surplus, runs);
        // Other threads can still submit items.
        bool ranLast = false;
        DispatchQueue::main()->async([&] { ranLast = runs == room; });
        EXPECT_TRUE(waitUntil([&] { return ranLast; }));
        const auto reported = [&] { return output.text().find(dropped(surplus)); };
        EXPECT_TRUE(waitUntil([&] { return reported() != std::string::npos; }));
        // The list starts from a node of the pool again.
        bool ranAlone = false;
        DispatchQueue::main()->async([&] { ranAlone = true; });
        EXPECT_TRUE(waitUntil([&] { return ranAlone; }));
    }
    const auto text = output.text();
    EXPECT_EQ(text.find(dropped(5)),
              text.rfind("The main queue was full", text.find(dropped(1)) - 1));
}

TEST(MainQueueInRealTime, WakesTheRunLoop) {
    bool ran = false;
    std::thread renderer([&] {
        const RealTimeScope scope;
        DispatchQueue::main()->async([&] { ran = true; });
    });
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    renderer.join();
}

}  // namespace
}  // namespace orvalo
