#include <csignal>

#include "tests/app/ApplicationFixture.h"

namespace orvalo::testing {

namespace {

using EndTest = ApplicationFixture;

TEST_F(EndTest, ClosingWhilePlayingEndsNormally) {
    for (int round = 0; round < 5; ++round) {
        start();
        key("ctrl+e");
        key("space");
        program->readUntil("AUEnginePlayer: Audio engine starting.");
        ASSERT_EQ(quit(), 0) << round;
    }
}

TEST_F(EndTest, AnInterruptEndsItAtOnce) {
    start();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), -SIGTERM);
}

}  // namespace

}  // namespace orvalo::testing
