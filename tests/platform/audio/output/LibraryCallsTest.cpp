#include "platform/audio/output/LibraryCalls.h"

#include <gtest/gtest.h>

#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

TEST(LibraryCallsTest, IsBusyUntilWorkThatPassedItsLimitEnds) {
    LibraryCalls calls;
    EXPECT_FALSE(calls.isBusy());
    EXPECT_TRUE(calls.finishWithin(std::chrono::hours(1), [] {}));
    EXPECT_FALSE(calls.isBusy());
    std::promise<void> answer;
    EXPECT_FALSE(calls.finishWithin(std::chrono::milliseconds(1),
                                    [&answer] { answer.get_future().wait(); }));
    EXPECT_TRUE(calls.isBusy());
    answer.set_value();
    EXPECT_TRUE(testing::pollUntil([&calls] { return !calls.isBusy(); }));
}

}  // namespace
}  // namespace orvalo
