#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>

#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo::testing;

/// A program that hosts an effect; effect: the process ID of the service.
struct Host {
    Host() {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe(ends.data()), 0);
        process = fork();
        if (process == 0) {
            dup2(ends[1], STDOUT_FILENO);
            execl(ORVALO_ORPHAN_MAKER, ORVALO_ORPHAN_MAKER, nullptr);
            _exit(127);
        }
        close(ends[1]);
        auto* output = fdopen(ends[0], "r");
        if (fscanf(output, "%d", &effect) != 1) {
            effect = -1;
        }
        fclose(output);
    }

    pid_t process = -1;
    pid_t effect = -1;
};

class OrphanTest : public ::testing::TestWithParam<int> {};

TEST_P(OrphanTest, TheServiceEndsWithItsHost) {
    const Host host;
    ASSERT_GT(host.effect, 0);
    EXPECT_TRUE(isAlive(host.effect));
    kill(host.process, GetParam());
    EXPECT_TRUE(pollUntil([&host] { return !isAlive(host.effect); }));
    waitpid(host.process, nullptr, 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, OrphanTest, ::testing::Values(SIGKILL, SIGSEGV, SIGTERM));

}  // namespace
