#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <list>

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
using ::testing::SizeIs;

class DamagedFile : public SuiteFile {
  protected:
    /// Stores values on several pages.
    void fill() const {
        const auto settings = open();
        for (int number = 0; number < 50; ++number) {
            settings->set(std::string(300, 'v'), "key " + std::to_string(number));
        }
        emptyLog(file_);
    }

    /// The old file is the only one set aside, and named on standard error.
    void expectToBeSetAsideOnce(const CapturedOutput& errors, const std::string& oldBytes) const {
        const auto old = setAside(file_);
        ASSERT_THAT(old, SizeIs(1));
        EXPECT_TRUE(bytesOf(old[0]) == oldBytes);
        EXPECT_THAT(errors.text(), HasSubstr("The settings in " + file_.string() +
                                             " are damaged. They are kept as " + old[0].string() +
                                             ", and new ones begin."));
    }

    /// The suite works and begins without values.
    void expectANewBeginning(const std::string& oldBytes) const {
        const CapturedOutput errors(2);
        const auto settings = open();
        ASSERT_NE(settings, nullptr);
        EXPECT_THAT(settings->dictionaryRepresentation(), IsEmpty());
        expectToBeSetAsideOnce(errors, oldBytes);
        settings->set("new", "key");
        EXPECT_EQ(open()->string("key"), "new");
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
    }

    std::string spoil(const std::string& bytes) const {
        std::filesystem::create_directories(file_.parent_path());
        writeBytes(file_, bytes);
        return bytes;
    }
};

TEST_F(DamagedFile, IsSetAsideWhenItIsNoDatabase) {
    expectANewBeginning(spoil("Dear diary, " + std::string(5000, '.')));
}

TEST_F(DamagedFile, IsSetAsideWhenItIsTooShort) {
    expectANewBeginning(spoil("x"));
}

TEST_F(DamagedFile, IsSetAsideWhenAPageIsDamaged) {
    fill();
    auto bytes = bytesOf(file_);
    ASSERT_GT(bytes.size(), 5U * 4096U);
    std::fill_n(bytes.begin() + 12'288, 4096, '\x5A');
    expectANewBeginning(spoil(bytes));
}

TEST_F(DamagedFile, IsSetAsideWhenTablesAreMissing) {
    std::filesystem::create_directories(file_.parent_path());
    query(file_,
          "PRAGMA journal_mode = WAL; PRAGMA application_id = 1332901444;"
          "PRAGMA user_version = 1; CREATE TABLE a (b)");
    expectANewBeginning(bytesOf(file_));
}

TEST_F(DamagedFile, IsSetAsideWhenItsTableHasOtherColumns) {
    for (const auto* columns : {"key TEXT PRIMARY KEY, value BLOB, owner TEXT NOT NULL",
                                "value BLOB NOT NULL, key TEXT PRIMARY KEY"}) {
        SCOPED_TRACE(columns);
        std::filesystem::remove_all(file_.parent_path());
        std::filesystem::create_directories(file_.parent_path());
        query(file_,
              "PRAGMA journal_mode = WAL; PRAGMA application_id = 1332901444;"
              "PRAGMA user_version = 1; CREATE TABLE entries (" +
                  std::string(columns) + ")");
        expectANewBeginning(bytesOf(file_));
    }
}

TEST_F(DamagedFile, IsSetAsideWithItsLogWhenItIsEmpty) {
    Worker other({name_});
    other.ask("set key 5");
    other.signal(SIGKILL);
    other.wait();
    const auto log = bytesOf(file_.string() + "-wal");
    ASSERT_GT(log.size(), 0U);
    expectANewBeginning(spoil(""));
    const auto old = setAside(file_);
    ASSERT_THAT(old, SizeIs(1));
    EXPECT_TRUE(bytesOf(old[0].string() + "-wal") == log);
}

/// The multiples of the step below the whole size, and their neighbours.
std::vector<std::size_t> cuts(std::size_t whole, std::size_t step) {
    std::vector<std::size_t> sizes;
    for (std::size_t size = 0; size < whole; size += step) {
        sizes.insert(sizes.end(), {size, size + 1});
        if (size > 0) {
            sizes.push_back(size - 1);
        }
    }
    return sizes;
}

TEST_F(DamagedFile, IsSetAsideWhenItIsCutAtAnyPage) {
    fill();
    const auto whole = bytesOf(file_);
    const auto sizes = cuts(whole.size(), 4096);
    ASSERT_GT(sizes.size(), 15U);
    for (const auto size : sizes) {
        for (const auto* suffix : {"", "-wal", "-shm"}) {
            std::filesystem::remove(file_.string() + suffix);
        }
        spoil(whole.substr(0, size));
        const CapturedOutput errors(2);
        const auto settings = open();
        ASSERT_NE(settings, nullptr) << size;
        EXPECT_THAT(settings->dictionaryRepresentation(), IsEmpty()) << size;
        settings->set(5, "key");
        EXPECT_EQ(open()->integer("key"), 5) << size;
        EXPECT_THAT(errors.text(), HasSubstr("damaged")) << size;
    }
    EXPECT_THAT(setAside(file_), SizeIs(sizes.size()));
}

TEST_F(DamagedFile, KeepsTheWritesBeforeTheCutOfALog) {
    open()->set(0, "key");
    emptyLog(file_);
    Worker writer({name_});
    for (int number = 1; number <= 20; ++number) {
        writer.ask("set key " + std::to_string(number));
    }
    writer.signal(SIGKILL);
    writer.wait();
    const auto database = bytesOf(file_);
    const auto log = bytesOf(file_.string() + "-wal");
    std::int64_t last = 0;
    // The last cut removes nothing.
    constexpr std::size_t kStep = 1030;
    for (std::size_t size = 0; size < log.size() + kStep; size += kStep) {
        spoil(database);
        std::filesystem::remove(file_.string() + "-shm");
        writeBytes(file_.string() + "-wal", log.substr(0, size));
        const auto number = open()->integer("key");
        EXPECT_GE(number, last) << size;
        last = number;
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok")) << size;
    }
    EXPECT_EQ(last, 20);
    EXPECT_THAT(setAside(file_), IsEmpty());
}

TEST_F(DamagedFile, IsLeftByAProcessThatHasItOpenWhenAnotherSetsItAside) {
    fill();
    const auto settings = open();
    EXPECT_EQ(settings->dictionaryRepresentation().size(), 50U);
    spoil(std::string(bytesOf(file_).size(), '\x5A'));
    // The first worker ends because it logs the damage.
    EXPECT_EQ(Worker({name_}).wait(), 3);
    EXPECT_EQ(Worker({name_}).ask("set new 1"), "done");
    EXPECT_EQ(settings->dictionaryRepresentation(), (PropertyList::Dictionary{{"new", 1}}));
    settings->set(2, "mine");
    EXPECT_EQ(Worker({name_}).ask("get mine"), "2");
    EXPECT_THAT(setAside(file_), SizeIs(1));
}

// The write of another program invalidates the pages in memory.
TEST_F(DamagedFile, IsSetAsideByAReaderThatHasItOpen) {
    fill();
    const auto settings = open();
    EXPECT_EQ(settings->dictionaryRepresentation().size(), 50U);
    query(file_, "UPDATE entries SET value = 1000 WHERE key = 'key 7'");
    const auto spoilt = spoil(std::string(bytesOf(file_).size(), '\x5A'));
    {
        const CapturedOutput errors(2);
        EXPECT_THAT(settings->dictionaryRepresentation(), IsEmpty());
        expectToBeSetAsideOnce(errors, spoilt);
    }
    settings->set(5, "new");
    EXPECT_EQ(Worker({name_}).ask("get new"), "5");
}

TEST_F(DamagedFile, IsSetAsideByAWriterThatHasItOpen) {
    fill();
    const auto settings = open();
    settings->set(1, "key 7");
    query(file_, "UPDATE entries SET value = 1000 WHERE key = 'key 7'");
    const auto spoilt = spoil(std::string(bytesOf(file_).size(), '\x5A'));
    {
        const CapturedOutput errors(2);
        settings->set(5, "new");
        expectToBeSetAsideOnce(errors, spoilt);
    }
    EXPECT_EQ(settings->dictionaryRepresentation(), (PropertyList::Dictionary{{"new", 5}}));
    EXPECT_EQ(Worker({name_}).ask("get new"), "5");
    EXPECT_EQ(Worker({name_}).ask("count"), "1");
}

TEST_F(DamagedFile, IsSetAsideOnceWhenManyProcessesOpenIt) {
    fill();
    spoil(std::string(bytesOf(file_).size(), '\x5A'));
    // Only the worker that sets the file aside ends, because it logs the damage.
    std::list<Worker> workers;
    for (int count = 0; count < 4; ++count) {
        workers.emplace_back(std::vector{name_});
    }
    std::size_t done = 0;
    for (auto& worker : workers) {
        const auto number = std::to_string(worker.process());
        worker.say(std::string("set key").append(number).append(" ").append(number));
        done += worker.readLine() == "done" ? 1 : 0;
    }
    EXPECT_EQ(done, 3U);
    EXPECT_THAT(setAside(file_), SizeIs(1));
    EXPECT_EQ(open()->dictionaryRepresentation().size(), 3U);
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
}

}  // namespace
}  // namespace orvalo::testing
