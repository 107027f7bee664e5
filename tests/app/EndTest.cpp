#include <csignal>
#include <filesystem>

#include "tests/app/ApplicationFixture.h"
#include "tests/testing/WaitUntil.h"

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

TEST_F(EndTest, TheWindowOpensThoughNobodyReadsTheOutput) {
    program = std::make_unique<Program>(
        std::vector<std::string>{"sh", "-c", "head -c 65536 /dev/zero; exec \"$0\"",
                                 ORVALO_TEST_STAGE "/bin/orvalo-on-loopback"},
        environment);
    EXPECT_TRUE(pollUntil([this] { return tree.shows("Play"); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(EndTest, ClosedStandardStreamsAreOpenedOnTheNullDevice) {
    program = std::make_unique<Program>(
        std::vector<std::string>{"sh", "-c", "exec \"$0\" <&- >&- 2>&-",
                                 ORVALO_TEST_STAGE "/bin/orvalo-on-loopback"},
        environment);
    EXPECT_TRUE(pollUntil([this] { return tree.shows("Play"); }));
    for (int stream = 0; stream < 3; ++stream) {
        EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(program->process()) +
                                                "/fd/" + std::to_string(stream)),
                  "/dev/null");
    }
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
