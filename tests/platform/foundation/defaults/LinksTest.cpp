#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/FileBytes.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// A suite whose file is a link to a file in another folder.
class LinkedFile : public SuiteFile {
  protected:
    LinkedFile() {
        std::filesystem::create_directories(target_.parent_path());
        std::filesystem::create_directories(file_.parent_path());
    }

    /// Stores a value in the database, or in its log only, and links it.
    void fill(bool isInLog) const {
        open()->set(1, "before");
        emptyLog(file_);
        if (isInLog) {
            Worker writer({name_});
            EXPECT_EQ(writer.ask("set key 1"), "done");
            writer.signal(SIGKILL);
            writer.wait();
        } else {
            open()->set(1, "key");
            emptyLog(file_);
        }
        for (const auto* suffix : {"", "-wal"}) {
            if (std::filesystem::exists(file_.string() + suffix)) {
                std::filesystem::rename(file_.string() + suffix, target_.string() + suffix);
            }
        }
        std::filesystem::remove(file_.string() + "-shm");
        std::filesystem::create_symlink(target_, file_);
    }

    std::filesystem::path target_ = settingsHome() / ("elsewhere of " + name_) / "settings";
};

TEST_F(LinkedFile, IsFollowed) {
    fill(false);
    const auto settings = open();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->integer("key"), 1);
    settings->set(2, "key");
    EXPECT_EQ(Worker({name_}).ask("get key"), "2");
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_THAT(query(target_, "PRAGMA integrity_check"), ElementsAre("ok"));
}

TEST_F(LinkedFile, IsRefusedAndUntouchedWhenItLeadsNowhere) {
    std::filesystem::create_symlink(target_, file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(file_.string() + ": No such file or directory"));
    EXPECT_FALSE(std::filesystem::exists(target_));
}

TEST_F(LinkedFile, ReadsTheLogAndMakesItPrivate) {
    fill(true);
    const auto log = target_.string() + "-wal";
    chmod(log.c_str(), 0664);
    EXPECT_EQ(open()->integer("key"), 1);
    struct stat status {};
    ASSERT_EQ(stat(log.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(LinkedFile, IsSetAsideWithoutTheTargetWhenTheTargetIsEmpty) {
    fill(true);
    const auto log = bytesOf(target_.string() + "-wal");
    ASSERT_GT(log.size(), 0U);
    writeBytes(target_, "");
    const CapturedOutput errors(2);
    const auto settings = open();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->object("key"), std::nullopt);
    const auto old = setAside(file_);
    ASSERT_THAT(old, SizeIs(1));
    EXPECT_THAT(errors.text(), HasSubstr("They are kept as " + old[0].string()));
    EXPECT_EQ(std::filesystem::read_symlink(old[0]), target_);
    EXPECT_TRUE(bytesOf(target_.string() + "-wal") == log);
    settings->set(5, "key");
    EXPECT_EQ(Worker({name_}).ask("get key"), "5");
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(file_)));
}

TEST_F(LinkedFile, SharesTheSettingsOfItsTarget) {
    const auto other = newSuiteName();
    UserDefaults::suiteName(other)->set(1, "key");
    std::filesystem::create_symlink(suiteFile(other), file_);
    const auto settings = open();
    EXPECT_EQ(settings->integer("key"), 1);
    Worker writer({other});
    for (int number = 2; number < 10; ++number) {
        EXPECT_EQ(writer.ask("set key " + std::to_string(number)), "done");
        EXPECT_EQ(settings->integer("key"), number);
        settings->set(-number, "key");
        EXPECT_EQ(writer.ask("get key"), std::to_string(-number));
    }
}

TEST_F(LinkedFile, IsFollowedToANewTarget) {
    const auto other = newSuiteName();
    UserDefaults::suiteName(other)->set(9, "key");
    fill(false);
    const auto settings = open();
    EXPECT_EQ(settings->integer("key"), 1);
    std::filesystem::remove(file_);
    std::filesystem::create_symlink(suiteFile(other), file_);
    settings->set(10, "new");
    EXPECT_EQ(settings->integer("key"), 9);
    Worker writer({other});
    EXPECT_EQ(writer.ask("get new"), "10");
    EXPECT_EQ(writer.ask("set new 11"), "done");
    EXPECT_EQ(settings->integer("new"), 11);
}

}  // namespace
}  // namespace orvalo::testing
