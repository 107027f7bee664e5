#include "platform/foundation/FatalError.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <thread>

namespace orvalo {
namespace {

void leaveTextInStandardOutput() {
    std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    std::fputs("pending|", stdout);
}

void closePipeBehindStandardOutput() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) == 0) {
        close(ends[0]);
        dup2(ends[1], STDOUT_FILENO);
    }
}

TEST(FatalErrorDeathTest, WritesOneLineAndAborts) {
    EXPECT_EXIT(fatalError("The message."), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: The message.\n$");
}

TEST(FatalErrorDeathTest, WorksOnEveryThread) {
    EXPECT_EXIT(std::thread([] { fatalError("From elsewhere."); }).join(),
                ::testing::KilledBySignal(SIGABRT), "^Fatal error: From elsewhere.\n$");
}

TEST(FatalErrorDeathTest, FlushesStandardOutputFirst) {
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            leaveTextInStandardOutput();
            fatalError("x");
        },
        ::testing::KilledBySignal(SIGABRT), "^pending\\|Fatal error: x\n$");
}

TEST(FatalErrorDeathTest, AbortsWhenStandardOutputIsAClosedPipe) {
    EXPECT_EXIT(
        {
            closePipeBehindStandardOutput();
            leaveTextInStandardOutput();
            fatalError("x");
        },
        ::testing::KilledBySignal(SIGABRT), "^Fatal error: x\n$");
}

}  // namespace
}  // namespace orvalo
