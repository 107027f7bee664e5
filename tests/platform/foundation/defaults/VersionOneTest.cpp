#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/ChangeCounter.h"
#include "platform/foundation/defaults/DefaultsFile.h"
#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/OtherWrites.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AFileOfVersionOne : public SuiteFile {
  protected:
    AFileOfVersionOne() { make(); }

    void make() const {
        std::filesystem::remove_all(file_.parent_path());
        std::filesystem::create_directories(file_.parent_path());
        query(file_,
              "PRAGMA journal_mode = WAL; PRAGMA application_id = 1332901444;"
              "PRAGMA user_version = 1; CREATE TABLE entries "
              "(change INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, value BLOB);"
              "INSERT INTO entries VALUES (7, 'key', x'62706c6973743030"  // The integer 42.
              "102a08000000000000010100000000000000010000000000000000000000000000000a')");
    }

    std::string counter() const { return file_.string() + "-changes"; }
    std::string version() const { return query(file_, "PRAGMA user_version").at(0); }

    void expectToComeForward() const {
        const auto settings = open();
        ASSERT_NE(settings, nullptr);
        EXPECT_EQ(settings->integer("key"), 42);
        EXPECT_EQ(version(), "2");
        settings->set(43, "key");
        EXPECT_EQ(Worker({name_}).ask("get key"), "43");
        EXPECT_THAT(query(file_, "SELECT change FROM entries"), ElementsAre("8"));
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
        EXPECT_THAT(setAside(file_), IsEmpty());
    }
};

TEST_F(AFileOfVersionOne, isBroughtForwardAndOthersAreToldOf) {
    const ChangeCounter changes(counter());
    const auto before = changes.mapping()->count();
    expectToComeForward();
    EXPECT_GT(changes.mapping()->count(), before);
    EXPECT_EQ(changes.mapping()->count() % 2, 0U);
}

TEST_F(AFileOfVersionOne, isMarkedAsLongAsItIsBroughtForward) {
    const ChangeCounter changes(counter());
    const MarkWatch watch(*changes.mapping(), "-wal");
    EXPECT_NE(open(), nullptr);
    EXPECT_TRUE(MarkWatch::wasMarkedThroughout());
}

// The thread sanitizer takes locks that are held across a fork for the parent's.
#ifndef __SANITIZE_THREAD__
TEST_F(AFileOfVersionOne, isWholeWhereverTheOneIsKilledWhoBringsItForward) {
    static int left = 0;
    int kills = 0;
    for (int status = SIGKILL; WIFSIGNALED(status); ++kills) {
        make();
        const auto before = ChangeCounter(counter()).mapping()->count();
        const auto child = fork();
        if (child == 0) {
            left = kills;
            const OtherWrites writes([](int file, const void* bytes, size_t size, off_t at) {
                if (left-- == 0) {
                    std::raise(SIGKILL);
                }
                return pwrite(file, bytes, size, at);
            });
            _exit(open() ? EXIT_SUCCESS : EXIT_FAILURE);
        }
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(status == SIGKILL || status == EXIT_SUCCESS) << status;
        EXPECT_TRUE(version() == "1" || ChangeCounter(counter()).mapping()->count() > before);
        expectToComeForward();
    }
    EXPECT_GT(kills, 4);
}
#endif

TEST_F(AFileOfVersionOne, isReadWhereverTheDiskIsFullWhileItIsBroughtForward) {
    int refusals = 0;
    for (bool isForward = false; !isForward; ++refusals) {
        make();
        {
            const FullDisk full(refusals);
            const auto settings = open();
            ASSERT_NE(settings, nullptr);
            EXPECT_EQ(settings->integer("key"), 42);
        }
        isForward = version() == "2";
        expectToComeForward();
    }
    EXPECT_GT(refusals, 4);
}

// Beside a program of that version, which has the log open.
TEST_F(AFileOfVersionOne, isReadInItsFormOnAFullDiskAndFollowed) {
    sqlite3* older = nullptr;
    sqlite3_open(file_.c_str(), &older);
    const auto run = [&](const char* statement) {
        EXPECT_EQ(sqlite3_exec(older, statement, nullptr, nullptr, nullptr), SQLITE_OK);
    };
    run("INSERT INTO entries (key, value) SELECT 'gone', value FROM entries");
    const ChangeCounter changes(counter());
    std::shared_ptr<UserDefaults> settings;
    {
        const FullDisk full;
        settings = open();
        ASSERT_NE(settings, nullptr);
        EXPECT_EQ(settings->integer("gone"), 42);
        const CapturedOutput errors(2);
        settings->set(1, "key");
        EXPECT_EQ(settings->integer("key"), 42);
        EXPECT_THAT(errors.text(), HasSubstr("'key' in " + file_.string() +
                                             " stays as it was: database or disk is full."));
    }
    run("UPDATE entries SET key = 'new', change = 9 WHERE key = 'gone'");
    { const ChangeCounter::Write told(*changes.mapping()); }
    {
        const FullDisk full;
        EXPECT_EQ(settings->integer("new"), 42);
        EXPECT_EQ(settings->object("gone"), std::nullopt);
    }
    EXPECT_EQ(version(), "1");
    run("DELETE FROM entries WHERE key = 'new'");
    sqlite3_close(older);
    settings.reset();
    expectToComeForward();
}

TEST_F(AFileOfVersionOne, isReadInItsFormWithoutACounter) {
    {
        DefaultsFile file(file_, nullptr);
        EXPECT_TRUE(file.isReadOnly());
        const auto changes = file.changes();
        ASSERT_THAT(changes.entries, SizeIs(1));
        EXPECT_EQ(changes.entries[0].key, "key");
        EXPECT_EQ(changes.entries[0].value, 42);
    }
    EXPECT_EQ(version(), "1");
    expectToComeForward();
}

TEST(NoFile, isMadeWithoutACounter) {
    const auto file = suiteFile(newSuiteName());
    std::filesystem::create_directories(file.parent_path());
    EXPECT_THROW(DefaultsFile(file, nullptr), NSError);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AFileOfVersionOne, isReadWhereItLiesAloneOnAFullDisk) {
    {
        const FullDisk full;
        EXPECT_EQ(open()->integer("key"), 42);
    }
    EXPECT_EQ(version(), "1");
    expectToComeForward();
}

}  // namespace
}  // namespace orvalo::testing
