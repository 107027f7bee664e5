#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "platform/foundation/defaults/ChangeCounter.h"
#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"

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

class DefaultsFiles : public SuiteFile {
  protected:
    std::array<std::filesystem::path, 4> files() const {
        return {file_, file_.string() + "-wal", file_.string() + "-shm",
                file_.string() + "-changes"};
    }
};

TEST_F(DefaultsFiles, areForTheirOwnerAlone) {
    const auto before = umask(0);
    open()->set(1, "key");
    umask(before);
    for (const auto& file : files()) {
        EXPECT_EQ(permissions(file), 0600U) << file;
    }
    EXPECT_EQ(permissions(file_.parent_path()), 0700U);
}

TEST_F(DefaultsFiles, areTakenBackFromOthers) {
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

TEST_F(DefaultsFiles, areNotLookedAtWhenNothingHasChanged) {
    const auto settings = open();
    settings->set(5, "key");
    // A look would find that there is no file, and begin a new one.
    std::filesystem::rename(file_, file_.string() + ".away");
    EXPECT_EQ(settings->integer("key"), 5);
    EXPECT_EQ(settings->dictionaryRepresentation().size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(DefaultsFiles, holdBinaryPropertyListsInADatabase) {
    open()->set("text", "key");
    EXPECT_THAT(query(file_, "SELECT key FROM entries"), ElementsAre("key"));
    EXPECT_THAT(query(file_, "SELECT substr(value, 1, 8) FROM entries"), ElementsAre("bplist00"));
    EXPECT_THAT(query(file_, "PRAGMA journal_mode"), ElementsAre("wal"));
    EXPECT_THAT(query(file_, "PRAGMA user_version"), ElementsAre("2"));
}

TEST_F(DefaultsFiles, ofANewerVersionAreRefusedAndLeftAlone) {
    open()->set(1, "key");
    query(file_, "PRAGMA user_version = 3");
    emptyLog(file_);
    const auto bytes = bytesOf(file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(),
                HasSubstr("The suite '" + name_ + "' cannot be opened: " + file_.string() +
                          " is of version 3, newer than this program's 2"));
    EXPECT_EQ(bytesOf(file_), bytes);
    EXPECT_THAT(setAside(file_), IsEmpty());
}

TEST_F(DefaultsFiles, thatANewerVersionBringsForwardAreLeftAloneByWhoHasThemOpen) {
    const auto settings = open();
    settings->set(1, "key");
    query(file_, "PRAGMA user_version = 3; CREATE TABLE newer (a)");
    {
        ChangeCounter counter(file_.string() + "-changes");
        const auto lock = counter.lock();
        const ChangeCounter::Write told(*counter.mapping());
    }
    emptyLog(file_);
    const auto bytes = bytesOf(file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(settings->integer("key"), 1);
    settings->set(2, "key");
    settings->removeObject("key");
    EXPECT_EQ(settings->integer("key"), 1);
    // However often it is read, once.
    const auto text = errors.text();
    EXPECT_EQ(text.find("cannot be read"), text.rfind("cannot be read"));
    const std::string reason = file_.string() + " is of version 3, newer than this program's 2";
    EXPECT_THAT(errors.text(),
                HasSubstr("The settings in " + file_.string() + " cannot be read: " + reason));
    EXPECT_THAT(errors.text(),
                HasSubstr("'key' in " + file_.string() + " stays as it was: " + reason));
    emptyLog(file_);
    EXPECT_EQ(bytesOf(file_), bytes);
}

TEST_F(DefaultsFiles, ofAnotherProgramAreRefusedAndLeftAlone) {
    std::filesystem::create_directories(file_.parent_path());
    query(file_, "CREATE TABLE theirs (a); INSERT INTO theirs VALUES (1)");
    const auto bytes = bytesOf(file_);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(file_.string() + " is another program's database"));
    query(file_, "PRAGMA application_id = 77");
    EXPECT_EQ(open(), nullptr);
    query(file_, "PRAGMA application_id = 0");
    EXPECT_EQ(query(file_, "SELECT a FROM theirs").size(), 1U);
    EXPECT_EQ(bytesOf(file_).substr(100), bytes.substr(100));
}

TEST_F(DefaultsFiles, ofAnotherUserAreRefused) {
    // Only the superuser can give a file away; anybody else finds one that is his.
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

TEST_F(DefaultsFiles, inAFolderOfAnotherUserAreRefused) {
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

TEST_F(DefaultsFiles, thatAreNoRegularFilesAreRefused) {
    std::filesystem::create_directories(file_.parent_path());
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    const CapturedOutput errors(2);
    EXPECT_EQ(open(), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr(file_.string() + " is no regular file"));
}

TEST_F(DefaultsFiles, haveACounterThatIsARegularFile) {
    const auto counter = file_.string() + "-changes";
    const auto refusal = [&] {
        const CapturedOutput errors(2);
        EXPECT_EQ(open(), nullptr);
        std::filesystem::remove(counter);
        return errors.text();
    };
    std::filesystem::create_directories(counter);
    EXPECT_THAT(refusal(), HasSubstr(counter + ": Is a directory"));
    ASSERT_EQ(mkfifo(counter.c_str(), 0600), 0);
    EXPECT_THAT(refusal(), HasSubstr(counter + " is no regular file"));
    std::filesystem::create_symlink("/etc/passwd", counter);
    EXPECT_THAT(refusal(), HasSubstr(counter + ": Too many levels of symbolic links"));
    EXPECT_NE(open(), nullptr);
}

TEST_F(DefaultsFiles, areMadeAnewAfterTheirRemoval) {
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

TEST_F(DefaultsFiles, areReadAnewAfterTheirRemovalByWhoOnlyReads) {
    Worker reader({name_});
    Worker another({name_});
    for (const bool isCounterAlone : {false, true}) {
        const auto settings = open();
        settings->set(1, "key");
        EXPECT_EQ(reader.ask("get key"), "1");
        EXPECT_EQ(another.ask("get key"), "1");
        for (const auto& file : files()) {
            if (!isCounterAlone || file == files().back()) {
                std::filesystem::remove(file);
            }
        }
        for (int number = 2; number < 5; ++number) {
            settings->set(number, "key");
            EXPECT_EQ(reader.ask("get key"), std::to_string(number));
            EXPECT_EQ(another.ask("get key"), std::to_string(number));
        }
        EXPECT_EQ(another.ask("set key 5"), "done");
        EXPECT_EQ(settings->integer("key"), 5);
        EXPECT_EQ(reader.ask("get key"), "5");
    }
}

TEST_F(DefaultsFiles, canLoseTheDatabaseAlone) {
    const auto settings = open();
    settings->set(1, "old");
    std::filesystem::remove(file_);
    settings->set(2, "new");
    EXPECT_EQ(settings->dictionaryRepresentation(), (PropertyList::Dictionary{{"new", 2}}));
    EXPECT_EQ(open()->integer("new"), 2);
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
    // The log that was left is no damage of the new one.
    EXPECT_THAT(setAside(file_), IsEmpty());
}

TEST_F(DefaultsFiles, canLoseTheirCounter) {
    for (const auto& spoilt :
         {std::string(), std::string("short"), std::string(64, 'x'), std::string(5000, '\0')}) {
        open()->set("kept", "key");
        writeBytes(file_.string() + "-changes", spoilt);
        const auto settings = open();
        EXPECT_EQ(settings->string("key"), "kept");
        Worker other({name_});
        EXPECT_EQ(other.ask("set theirs 5"), "done");
        EXPECT_EQ(settings->integer("theirs"), 5);
        settings->set(6, "theirs");
        EXPECT_EQ(other.ask("get theirs"), "6");
    }
}

TEST_F(DefaultsFiles, endAWriteWhoseProcessHasDied) {
    const auto settings = open();
    settings->set(5, "key");
    ChangeCounter counter(file_.string() + "-changes");
    const auto& mapping = counter.mapping();
    // As it is left by one that dies while it writes.
    mapping->setCount(mapping->count() | 1U);
    EXPECT_EQ(settings->integer("key"), 5);
    EXPECT_EQ(mapping->count() % 2, 0U);
    std::filesystem::rename(file_, file_.string() + ".away");
    EXPECT_EQ(settings->integer("key"), 5);
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(DefaultsFiles, areLookedAtAgainAsLongAsSomebodyWrites) {
    const auto settings = open();
    settings->set(5, "key");
    settings->set(6, "other");
    ChangeCounter counter(file_.string() + "-changes");
    const auto lock = counter.lock();
    counter.mapping()->setCount(counter.mapping()->count() | 1U);
    EXPECT_EQ(settings->integer("key"), 5);
    // What is written under the mark has no count of its own yet.
    query(file_,
          "UPDATE entries SET change = 100, value = (SELECT value FROM entries WHERE "
          "key = 'other') WHERE key = 'key'");
    EXPECT_EQ(settings->integer("key"), 6);
}

TEST_F(DefaultsFiles, forgetWhatWasRemoved) {
    const auto settings = open();
    Worker other({name_});
    settings->set(0, "first");
    settings->set(1, "gone");
    EXPECT_EQ(other.ask("count"), "2");
    settings->removeObject("gone");
    for (int number = 0; number < 1000; ++number) {
        const auto key = std::to_string(number);
        settings->set(number, key);
        settings->removeObject(key);
    }
    EXPECT_LT(std::stoi(query(file_, "SELECT count(*) FROM entries").at(0)), 300);
    EXPECT_EQ(other.ask("count"), "1");
    EXPECT_EQ(other.ask("get gone"), "absent");
    EXPECT_EQ(other.ask("get first"), "0");
}

TEST_F(DefaultsFiles, haveALogThatDoesNotGrowForEver) {
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

TEST_F(DefaultsFiles, loseOnlyAValueThatIsNotReadable) {
    open()->set("good", "good");
    query(file_, "INSERT INTO entries (key, value) VALUES ('bad', 'not a property list')");
    const CapturedOutput errors(2);
    const auto settings = open();
    EXPECT_EQ(settings->object("bad"), std::nullopt);
    EXPECT_EQ(settings->string("good"), "good");
    EXPECT_THAT(errors.text(), HasSubstr("The value of 'bad' in " + file_.string() +
                                         " is not readable: it is no binary property list."));
    EXPECT_EQ(query(file_, "SELECT count(*) FROM entries").at(0), "2");
    settings->set("better", "bad");
    EXPECT_EQ(open()->string("bad"), "better");
}

}  // namespace
}  // namespace orvalo::testing
