#include "platform/audio/bridge/host/ServiceLog.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr ServiceLog::Clock::time_point kStart{std::chrono::hours(1)};

class ServiceLogTest : public ::testing::Test {
  protected:
    ServiceLogTest() {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
        reading_ = FileDescriptor(ends[0]);
        writing_ = FileDescriptor(ends[1]);
    }

    void write(const std::string& text) {
        ASSERT_EQ(::write(writing_.get(), text.data(), text.size()),
                  static_cast<ssize_t>(text.size()));
    }
    ServiceLog log(unsigned linesPerSecond = 50) {
        return {std::move(reading_), "urn:a", linesPerSecond};
    }

    FileDescriptor reading_;
    FileDescriptor writing_;
};

TEST_F(ServiceLogTest, PrefixesLinesWithTheEffectsURI) {
    auto log = this->log();
    const CapturedOutput error(2);
    write("one\ntwo\nthr");
    log.read(kStart);
    write("ee\n\n  \n");
    log.read(kStart);
    EXPECT_THAT(error.lines(), ElementsAre(HasSubstr("<urn:a>: one"), HasSubstr("<urn:a>: two"),
                                           HasSubstr("<urn:a>: three")));
    EXPECT_EQ(log.lastMessage(), "three");
}

TEST_F(ServiceLogTest, DoesNotRepeatThePrefix) {
    auto log = this->log();
    const CapturedOutput error(2);
    write("<urn:a>: one\n");
    log.read(kStart);
    EXPECT_THAT(error.text(), AllOf(HasSubstr("<urn:a>: one"), Not(HasSubstr("<urn:a>: <"))));
}

TEST_F(ServiceLogTest, LogsAnIncompleteLastLine) {
    auto log = this->log();
    const CapturedOutput error(2);
    write("the last words");
    writing_ = FileDescriptor();
    log.finish(kStart);
    EXPECT_THAT(error.lines(), ElementsAre(HasSubstr("<urn:a>: the last words")));
    EXPECT_EQ(log.lastMessage(), "the last words");
    EXPECT_LT(log.descriptor(), 0);
}

TEST_F(ServiceLogTest, CountsTheLinesAboveTheLimitPerSecond) {
    auto log = this->log(3);
    const CapturedOutput error(2);
    for (int line = 0; line < 10; ++line) {
        write("line " + std::to_string(line) + "\n");
    }
    log.read(kStart);
    EXPECT_EQ(log.lastMessage(), "line 9");
    write("later\n");
    log.read(kStart + std::chrono::milliseconds(999));
    write("a new second\n");
    log.read(kStart + std::chrono::seconds(1));
    const auto text = error.text();
    EXPECT_THAT(
        text, AllOf(HasSubstr(": line 2\n"), Not(HasSubstr("line 3")), Not(HasSubstr("later")),
                    HasSubstr(": a new second\n"),
                    HasSubstr("The effect <urn:a> exceeds the limit of log lines; 8 lines are left "
                              "out.")));
}

TEST_F(ServiceLogTest, CutsALongLine) {
    auto log = this->log();
    const CapturedOutput error(2);
    for (int piece = 0; piece < 10; ++piece) {
        write(std::string(4000, 'x'));
        log.read(kStart);
    }
    write("\nshort\n");
    log.read(kStart);
    EXPECT_THAT(error.lines(),
                ElementsAre(HasSubstr(": " + std::string(2000, 'x')), HasSubstr(": short")));
    EXPECT_THAT(error.text(), Not(HasSubstr(std::string(2001, 'x'))));
}

TEST_F(ServiceLogTest, ReadsALimitedAmountAtATime) {
    auto log = this->log(1);
    const CapturedOutput error(2);
    fcntl(writing_.get(), F_SETPIPE_SZ, 1 << 20);
    write(std::string(200000, '\n') + "end\n");
    log.read(kStart);
    EXPECT_EQ(log.lastMessage(), "");
    log.finish(kStart);
    EXPECT_EQ(log.lastMessage(), "end");
}

}  // namespace
