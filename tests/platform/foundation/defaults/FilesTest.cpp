#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/FileBytes.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr uid_t kSomebodyElse = 65534;

mode_t permissions(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

class SettingsFile : public SuiteFile {
  protected:
    std::array<std::filesystem::path, 3> files() const {
        return {file_, file_.string() + "-wal", file_.string() + "-shm"};
    }
};

TEST_F(SettingsFile, IsPrivateToItsOwner) {
    const auto before = umask(0);
    open()->set(1, "key");
    umask(before);
    for (const auto& file : files()) {
        EXPECT_EQ(permissions(file), 0600U) << file;
    }
    EXPECT_EQ(permissions(file_.parent_path()), 0700U);
}

TEST_F(SettingsFile, LosesThePermissionsOfOthers) {
    open()->set(1, "key");
    for (const auto& file : files()) {
        chmod(file.c_str(), 0664);
    }
    chmod(file_.parent_path().c_str(), 0755);
    EXPECT_EQ(open()->integer("key"), 1);
    for (const auto& file : files()) {
        EXPECT_EQ(permissions(file), 0600U) << file;
    }
    EXPECT_EQ(permissions(file_.parent_path()), 0700U);
}

TEST_F(SettingsFile, HoldsGVariantsInADatabaseWithALog) {
    open()->set("text", "key");
    EXPECT_THAT(query(file_, "SELECT key FROM entries"), ElementsAre("key"));
    EXPECT_THAT(query(file_, "SELECT hex(value) FROM entries"), ElementsAre("74657874000073"));
    EXPECT_THAT(query(file_, "PRAGMA journal_mode"), ElementsAre("wal"));
    EXPECT_THAT(query(file_, "PRAGMA user_version"), ElementsAre("1"));
}

TEST_F(SettingsFile, IsRefusedAndUntouchedInAnotherFormat) {
    open()->set(1, "key");
    query(file_, "PRAGMA user_version = 2");
    emptyLog(file_);
    const auto bytes = bytesOf(file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(),
                HasSubstr("The suite '" + name_ + "' cannot be opened: " + file_.string() +
                          " is in format 2, which this program does not know"));
    EXPECT_EQ(bytesOf(file_), bytes);
    EXPECT_THAT(setAside(file_), IsEmpty());
}

TEST_F(SettingsFile, IsRefusedAndUntouchedWhenAnotherProgramMadeIt) {
    std::filesystem::create_directories(file_.parent_path());
    query(file_, "CREATE TABLE theirs (a); INSERT INTO theirs VALUES (1)");
    const auto bytes = bytesOf(file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(file_.string() + " is the database of another program"));
    query(file_, "PRAGMA application_id = 77");
    EXPECT_EQ(open(), nullptr);
    query(file_, "PRAGMA application_id = 0");
    EXPECT_EQ(query(file_, "SELECT a FROM theirs").size(), 1U);
    EXPECT_EQ(bytesOf(file_).substr(100), bytes.substr(100));
}

TEST_F(SettingsFile, IsRefusedWhenAnotherUserOwnsIt) {
    // Without root, a file of root stands in for another user's.
    std::filesystem::create_directories(file_.parent_path());
    auto theirs = file_;
    if (geteuid() == 0) {
        open()->set(1, "key");
        ASSERT_EQ(chown(file_.c_str(), kSomebodyElse, kSomebodyElse), 0);
    } else {
        theirs = "/etc/passwd";
        std::filesystem::create_symlink(theirs, file_);
    }
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(theirs.string() + " belongs to another user"));
}

TEST_F(SettingsFile, IsRefusedWhenAnotherUserOwnsTheFolder) {
    const auto folder = file_.parent_path();
    const auto away = folder.string() + ".away";
    open()->set(1, "key");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(folder.c_str(), kSomebodyElse, kSomebodyElse), 0);
    } else {
        std::filesystem::rename(folder, away);
        std::filesystem::create_directory_symlink("/usr", folder);
    }
    {
        const CapturedOutput errors(2);
        EXPECT_EQ(open(), nullptr);
        EXPECT_THAT(errors.text(), HasSubstr("The suite '" + name_ + "' cannot be opened: " +
                                             folder.string() + " belongs to another user"));
    }
    if (geteuid() == 0) {
        ASSERT_EQ(chown(folder.c_str(), 0, 0), 0);
    } else {
        std::filesystem::remove(folder);
        std::filesystem::rename(away, folder);
    }
    EXPECT_EQ(open()->integer("key"), 1);
}

TEST_F(SettingsFile, IsRefusedWhenItIsNotARegularFile) {
    std::filesystem::create_directories(file_.parent_path());
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(file_.string() + " is not a regular file"));
}

TEST_F(SettingsFile, IsRecreatedByTheWriteAfterItsRemoval) {
    const auto settings = open();
    settings->set(1, "old");
    Worker other({name_});
    EXPECT_EQ(other.ask("get old"), "1");
    for (const auto& file : files()) {
        std::filesystem::remove(file);
    }
    settings->set(2, "new");
    EXPECT_EQ(settings->object("old"), std::nullopt);
    EXPECT_EQ(settings->integer("new"), 2);
    EXPECT_EQ(other.ask("set third 3"), "done");
    EXPECT_EQ(other.ask("get new"), "2");
    EXPECT_EQ(settings->integer("third"), 3);
}

TEST_F(SettingsFile, IsReadAgainAfterItsRemovalByAnotherProcess) {
    const auto settings = open();
    Worker reader({name_});
    settings->set(1, "key");
    EXPECT_EQ(reader.ask("get key"), "1");
    for (const auto& file : files()) {
        std::filesystem::remove(file);
    }
    for (int number = 2; number < 5; ++number) {
        settings->set(number, "key");
        EXPECT_EQ(reader.ask("get key"), std::to_string(number));
    }
}

TEST_F(SettingsFile, IgnoresTheLogOfARemovedDatabase) {
    const auto settings = open();
    settings->set(1, "old");
    std::filesystem::remove(file_);
    settings->set(2, "new");
    EXPECT_EQ(settings->dictionaryRepresentation(), (PropertyList::Dictionary{{"new", 2}}));
    EXPECT_EQ(open()->integer("new"), 2);
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
    // The old log does not damage the new database.
    EXPECT_THAT(setAside(file_), IsEmpty());
}

TEST_F(SettingsFile, HasALogOfLimitedSize) {
    const auto settings = open();
    Worker other({name_});
    for (int number = 0; number < 3000; ++number) {
        settings->set(number, "key");
        if (number % 10 == 0) {
            EXPECT_EQ(other.ask("get key"), std::to_string(number));
        }
    }
    EXPECT_LT(std::filesystem::file_size(file_.string() + "-wal"), 5U << 20U);
}

TEST_F(SettingsFile, LosesOnlyAValueThatCannotBeDecoded) {
    open()->set("good", "good");
    query(file_, "INSERT INTO entries (key, value) VALUES ('bad', 'not a value')");
    const CapturedOutput errors(2);
    const auto settings = open();
    EXPECT_EQ(settings->object("bad"), std::nullopt);
    EXPECT_EQ(settings->string("good"), "good");
    EXPECT_THAT(errors.text(), HasSubstr("The value of 'bad' in " + file_.string() +
                                         " cannot be read: it is damaged."));
    EXPECT_EQ(query(file_, "SELECT count(*) FROM entries").at(0), "2");
    settings->set("better", "bad");
    EXPECT_EQ(open()->string("bad"), "better");
}

}  // namespace
}  // namespace orvalo::testing
