#include "platform/foundation/Print.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/foundation/FatalError.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo {
namespace {

using orvalo::testing::CapturedOutput;
using namespace std::string_view_literals;

/// Redirects a file descriptor to the file of another descriptor for the object's life.
class RedirectedDescriptor {
  public:
    RedirectedDescriptor(int descriptor, int file)
        : descriptor_(descriptor), saved_(dup(descriptor)) {
        std::fflush(nullptr);
        dup2(file, descriptor_);
    }
    ~RedirectedDescriptor() {
        dup2(saved_, descriptor_);
        close(saved_);
    }
    RedirectedDescriptor(const RedirectedDescriptor&) = delete;
    RedirectedDescriptor& operator=(const RedirectedDescriptor&) = delete;

  private:
    int descriptor_;
    int saved_;
};

class Pipe {
  public:
    explicit Pipe(int flags) { EXPECT_EQ(pipe2(ends_.data(), O_CLOEXEC | flags), 0); }
    ~Pipe() {
        closeReader();
        closeWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int reader() const { return ends_[0]; }
    int writer() const { return ends_[1]; }
    void closeReader() { closeEnd(ends_[0]); }
    void closeWriter() { closeEnd(ends_[1]); }

  private:
    static void closeEnd(int& end) {
        if (end >= 0) {
            close(end);
            end = -1;
        }
    }

    std::array<int, 2> ends_{};
};

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 65536> chunk{};
    for (ssize_t count = 0; (count = read(descriptor, chunk.data(), chunk.size())) > 0;) {
        text.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return text;
}

bool isPipeSignalPending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

bool isPipeSignalBlocked() {
    sigset_t mask;
    pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    return sigismember(&mask, SIGPIPE) == 1;
}

TEST(Print, WritesTheTextUnchangedAndALineFeed) {
    const CapturedOutput output;
    print("A line.");
    EXPECT_EQ(output.text(), "A line.\n");
    print("");
    print("two\nlines\n");
    print("nul \0, \xff, %s"sv);
    EXPECT_EQ(output.text(), "A line.\n\ntwo\nlines\n\nnul \0, \xff, %s\n"sv);
}

TEST(Print, WritesALineWithOneCall) {
    // A pipe in packet mode returns each write separately.
    const Pipe pipe(O_DIRECT);
    {
        const RedirectedDescriptor redirected(STDOUT_FILENO, pipe.writer());
        print("first");
        print("second");
    }
    std::array<char, 64> packet{};
    const auto count = read(pipe.reader(), packet.data(), packet.size());
    ASSERT_GT(count, 0);
    EXPECT_EQ(std::string(packet.data(), static_cast<std::size_t>(count)), "first\n");
}

class PrintOfManyThreads : public ::testing::TestWithParam<int> {};

TEST_P(PrintOfManyThreads, NeverMixesLines) {
    constexpr int threads = 8;
    constexpr int linesEach = 100;
    constexpr std::size_t length = 10'000;  // Above the size of atomic pipe writes.
    Pipe pipe(GetParam());
    fcntl(pipe.reader(), F_SETFL, 0);
    std::string text;
    std::thread reader([&] { text = readAll(pipe.reader()); });
    {
        const RedirectedDescriptor redirected(STDOUT_FILENO, pipe.writer());
        std::vector<std::thread> writers;
        writers.reserve(8);
        for (int thread = 0; thread < threads; ++thread) {
            writers.emplace_back([thread] {
                const std::string line(length, static_cast<char>('a' + thread));
                for (int count = 0; count < linesEach; ++count) {
                    print(line);
                }
            });
        }
        for (auto& writer : writers) {
            writer.join();
        }
    }
    pipe.closeWriter();
    reader.join();

    std::map<std::string, int> seen;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        ++seen[line];
    }
    std::map<std::string, int> expected;
    for (int thread = 0; thread < threads; ++thread) {
        expected[std::string(length, static_cast<char>('a' + thread))] = linesEach;
    }
    EXPECT_TRUE(seen == expected);
}

INSTANTIATE_TEST_SUITE_P(Pipes, PrintOfManyThreads, ::testing::Values(0, O_NONBLOCK));

TEST(Print, IgnoresAClosedPipe) {
    Pipe pipe(0);
    pipe.closeReader();
    {
        const RedirectedDescriptor redirected(STDOUT_FILENO, pipe.writer());
        print("nobody reads this");
    }
    EXPECT_FALSE(isPipeSignalPending());
    EXPECT_FALSE(isPipeSignalBlocked());
    const CapturedOutput output;
    print("and on");
    EXPECT_EQ(output.text(), "and on\n");
}

TEST(Print, KeepsAPendingPipeSignal) {
    Pipe pipe(0);
    pipe.closeReader();
    sigset_t pipeSignal;
    sigset_t before;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    pthread_kill(pthread_self(), SIGPIPE);
    {
        const RedirectedDescriptor redirected(STDOUT_FILENO, pipe.writer());
        print("nobody reads this");
    }
    EXPECT_TRUE(isPipeSignalPending());
    EXPECT_TRUE(isPipeSignalBlocked());
    const timespec atOnce{};
    EXPECT_EQ(sigtimedwait(&pipeSignal, nullptr, &atOnce), SIGPIPE);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(PrintDeathTest, KeepsTheProcessDefaultForPipeSignals) {
    EXPECT_EXIT(
        {
            Pipe pipe(0);
            pipe.closeReader();
            dup2(pipe.writer(), STDOUT_FILENO);
            print("nobody reads this");
            if (write(STDERR_FILENO, "printed", 7) == 7) {
                (void)!write(STDOUT_FILENO, "x", 1);
            }
        },
        ::testing::KilledBySignal(SIGPIPE), "^printed$");
}

TEST(Print, IgnoresAFullDevice) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    {
        const RedirectedDescriptor redirected(STDOUT_FILENO, full);
        print("no room");
    }
    close(full);
    const CapturedOutput output;
    print("and on");
    EXPECT_EQ(output.text(), "and on\n");
}

/// Makes standard output a pipe whose buffer is full. The process of a death test only.
Pipe& fullStandardOutput() {
    static Pipe pipe(O_NONBLOCK);
    std::array<char, 4096> page{};
    while (write(pipe.writer(), page.data(), page.size()) > 0) {
    }
    fcntl(pipe.writer(), F_SETFL, 0);
    fcntl(pipe.reader(), F_SETFL, 0);
    dup2(pipe.writer(), STDOUT_FILENO);
    return pipe;
}

/// Reads until the text has that end.
std::string readTo(std::string_view end, int descriptor) {
    std::string text;
    std::array<char, 4096> chunk{};
    while (!text.ends_with(end)) {
        const auto count = read(descriptor, chunk.data(), chunk.size());
        text.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return text;
}

TEST(PrintDeathTest, LinesThatWaitFollowInOrder) {
    EXPECT_EXIT(
        {
            auto& pipe = fullStandardOutput();
            printWithoutWaiting();
            std::string expected;
            for (int line = 0; line < 20'000; ++line) {
                print(std::to_string(line));
                expected += std::to_string(line) + "\n";
            }
            auto text = readTo("19999\n", pipe.reader());
            print("at once");
            expected += "at once\n";
            text += readTo("at once\n", pipe.reader());
            _exit(text.substr(text.find_first_not_of('\0')) == expected ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(PrintDeathTest, AnUnreadTerminalDoesNotHoldUpTheProgram) {
    EXPECT_EXIT(
        {
            int reader = -1;
            int terminal = -1;
            if (openpty(&reader, &terminal, nullptr, nullptr, nullptr) != 0) {
                _exit(2);
            }
            dup2(terminal, STDOUT_FILENO);
            dup2(terminal, STDERR_FILENO);
            printWithoutWaiting();
            alarm(60);
            std::string expected;
            // Long enough for a terminal that has some room to take only a part. The terminal adds
            // the carriage returns.
            const std::string filling(1000, 'x');
            for (int line = 0; line < 500; ++line) {
                print(filling + std::to_string(line));
                expected += filling + std::to_string(line) + "\r\n";
            }
            _exit(readTo("x499\r\n", reader) == expected ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(PrintDeathTest, BeyondAMebibyteLinesAreLostAndAMessageSaysSo) {
    EXPECT_EXIT(
        {
            fullStandardOutput();
            printWithoutWaiting();
            const std::string line(1000, 'x');
            for (int count = 0; count < 2000; ++count) {
                print(line);
            }
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "Nobody reads standard output; further lines are lost.");
}

TEST(PrintDeathTest, AnUnreadStandardErrorDoesNotHoldUpAFatalError) {
    EXPECT_EXIT(
        {
            const auto& pipe = fullStandardOutput();
            dup2(pipe.writer(), STDERR_FILENO);
            printWithoutWaiting();
            alarm(20);
            fatalError("the end");
        },
        ::testing::KilledBySignal(SIGABRT), "");
}

TEST(PrintDeathTest, LinesThatWaitAreWrittenBeforeTheEnd) {
    // The process that ends inherits this pipe.
    const auto style = GTEST_FLAG_GET(death_test_style);
    GTEST_FLAG_SET(death_test_style, "fast");
    Pipe result(0);
    EXPECT_EXIT(
        {
            auto& pipe = fullStandardOutput();
            printWithoutWaiting();
            print("the last line");
            // Outlives this process.
            if (fork() == 0) {
                pipe.closeWriter();
                close(STDOUT_FILENO);
                const auto text = readAll(pipe.reader());
                writeLine(result.writer(), text.substr(text.find_first_not_of('\0')));
                _exit(0);
            }
            fatalError("the end");
        },
        ::testing::KilledBySignal(SIGABRT), "^Fatal error: the end");
    result.closeWriter();
    GTEST_FLAG_SET(death_test_style, style);
    EXPECT_EQ(readAll(result.reader()), "the last line\n\n");
}

}  // namespace
}  // namespace orvalo
