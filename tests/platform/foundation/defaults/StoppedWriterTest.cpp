#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::HasSubstr;

/// A process that is stopped in the middle of a write and holds the write lock.
class StoppedWriter : public SuiteFile {
  protected:
    void SetUp() override {
        open()->set(1, "key");
        writer_.say("stop key 2");
        ASSERT_TRUE(writer_.waitForStop());
    }

    Worker writer_{{name_}};
};

TEST_F(StoppedWriter, LetsANewReaderReadWhatIsCommitted) {
    const CapturedOutput errors(2);
    const auto settings = open();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->integer("key"), 1);
    // A line on standard error would end this process.
    EXPECT_EQ(Worker({name_}).ask("get key"), "1");
    EXPECT_EQ(errors.text(), "");
}

TEST_F(StoppedWriter, RefusesAnotherWriterWithALine) {
    const auto settings = open();
    ASSERT_NE(settings, nullptr);
    {
        const CapturedOutput errors(2);
        settings->set(3, "key");
        EXPECT_THAT(errors.text(),
                    HasSubstr("'key' in " + file_.string() +
                              " stays as it was: another process has kept it locked for 5 s."));
    }
    EXPECT_EQ(settings->integer("key"), 1);
}

TEST_F(StoppedWriter, EndsItsWriteWhenItContinues) {
    const auto settings = open();
    writer_.signal(SIGCONT);
    EXPECT_EQ(writer_.readLine(), "done");
    EXPECT_EQ(settings->integer("key"), 2);
}

TEST_F(StoppedWriter, ReleasesTheLockWhenItIsKilled) {
    writer_.signal(SIGKILL);
    EXPECT_EQ(writer_.wait(), -SIGKILL);
    const auto settings = open();
    EXPECT_EQ(settings->integer("key"), 1);
    settings->set(3, "key");
    EXPECT_EQ(Worker({name_}).ask("get key"), "3");
}

}  // namespace
}  // namespace orvalo::testing
