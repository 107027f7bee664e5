#include "platform/audio/bridge/host/AttentiveClock.h"

#include <gtest/gtest.h>

namespace {

using namespace orvalo;
using std::chrono::milliseconds;

TEST(AttentiveClock, CountsTheTimeOfItsTurns) {
    const AttentiveClock::Clock::time_point start{std::chrono::hours(1)};
    AttentiveClock clock(start, milliseconds(300));
    clock.turn(start + milliseconds(100));
    clock.turn(start + milliseconds(400));
    EXPECT_EQ(clock.now() - start, milliseconds(400));
}

TEST(AttentiveClock, ATurnThatWasSleptThroughCountsForLittle) {
    const AttentiveClock::Clock::time_point start{std::chrono::hours(1)};
    AttentiveClock clock(start, milliseconds(300));
    clock.turn(start + std::chrono::hours(8));
    EXPECT_EQ(clock.now() - start, milliseconds(300));
    clock.turn(start + std::chrono::hours(8) + milliseconds(50));
    EXPECT_EQ(clock.now() - start, milliseconds(350));
}

}  // namespace
