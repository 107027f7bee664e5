#include "support/Logging.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"
#include "tests/testing/MainQueue.h"

namespace orvalo::testing {
namespace {

class Logging : public ::testing::TestWithParam<void (*)(std::string)> {
  protected:
    static void log(std::string text) { GetParam()(std::move(text)); }
};

INSTANTIATE_TEST_SUITE_P(Both, Logging, ::testing::Values(&debugprint, &safeprint),
                         [](const auto& function) {
                             return function.index == 0 ? "debugprint" : "safeprint";
                         });

TEST_P(Logging, WritesAnEmptyLineForAnEmptyText) {
    const CapturedOutput output;
    log("");
    drainMainQueue();
    EXPECT_EQ(output.text(), "\n");
}

TEST_P(Logging, WritesTheTextUnchanged) {
    const CapturedOutput output;
    const std::string text = "  one\n\ttwo\n%s \\ \x1b[0m ünï " + std::string(100'000, 'x') + ' ';
    log(text);
    drainMainQueue();
    EXPECT_EQ(output.text(), text + '\n');
}

TEST_P(Logging, CopiesTheText) {
    const CapturedOutput output;
    std::string text = "a text that is too long for the object itself";
    log(text);
    text.assign(text.size(), '?');
    drainMainQueue();
    EXPECT_EQ(output.text(), "a text that is too long for the object itself\n");
}

TEST_P(Logging, KeepsTheOrderOfABackgroundThreadsLines) {
    const CapturedOutput output;
    std::thread([] {
        log("first");
        log("second");
    }).join();
    EXPECT_EQ(output.text(), "");
    drainMainQueue();
    EXPECT_EQ(output.text(), "first\nsecond\n");
}

TEST_P(Logging, NeverMixesLinesOfManyThreads) {
    const CapturedOutput output;
    constexpr int kThreads = 4;
    constexpr int kLines = 50;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([number] {
            for (int line = 0; line < kLines; ++line) {
                log(std::string(50, static_cast<char>('a' + number)) + std::to_string(line));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    drainMainQueue();

    std::vector<int> next(kThreads, 0);
    const auto lines = output.lines();
    EXPECT_EQ(lines.size(), kThreads * kLines);
    for (const auto& line : lines) {
        const auto number = static_cast<std::size_t>(line[0] - 'a');
        ASSERT_LT(number, next.size());
        EXPECT_EQ(line, std::string(50, line[0]) + std::to_string(next[number]++));
    }
}

TEST_P(Logging, WritesAfterTheCurrentItemOfTheMainQueue) {
    const CapturedOutput output;
    DispatchQueue::main()->async([] {
        log("queued");
        print("direct");
    });
    drainMainQueue();
    drainMainQueue();
    EXPECT_EQ(output.text(), "direct\nqueued\n");
}

TEST_P(Logging, WritesOnTheMainThreadOnly) {
    const CapturedOutput output;
    log("waiting");
    EXPECT_EQ(output.text(), "") << "The main queue has not run yet.";
    drainMainQueue();
    EXPECT_EQ(output.text(), "waiting\n");
}

TEST_P(Logging, NothingWaitsAtTheEnd) {
    // A line that the main queue has not reached is lost.
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            print("direct");
            log("queued");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0),
        ::testing::AllOf(::testing::HasSubstr("direct\n"),
                         ::testing::Not(::testing::HasSubstr("queued"))));
}

TEST(LoggingOfBoth, KeepsTheOrderOfTheCalls) {
    const CapturedOutput output;
    debugprint("one");
    safeprint("two");
    debugprint("three");
    drainMainQueue();
    EXPECT_EQ(output.text(), "one\ntwo\nthree\n");
}

}  // namespace
}  // namespace orvalo::testing
