#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/SmallDisk.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class SmallDiskTest : public SuiteFile {
  protected:
    static void SetUpTestSuite() { SmallDisk::shared().mount(settingsHome().parent_path()); }
    static void TearDownTestSuite() { SmallDisk::shared().unmount(); }

    SmallDiskTest() { disk_.empty(); }
    ~SmallDiskTest() override { disk_.makeRoom(); }

    /// The lines that are not empty.
    static std::vector<std::string> lines(const CapturedOutput& output) {
        auto lines = output.lines();
        std::erase(lines, "");
        return lines;
    }

    /// Writes a value, which is either stored (true) or refused with one line (false).
    bool isStored(UserDefaults& settings, const PropertyList& value, const std::string& key) {
        const CapturedOutput errors(2);
        const auto before = settings.object(key);
        settings.set(value, key);
        const auto after = settings.object(key);
        if (after == value) {
            EXPECT_THAT(lines(errors), IsEmpty());
            stored_.insert_or_assign(key, value);
            return true;
        }
        EXPECT_EQ(after, before);
        EXPECT_THAT(lines(errors), ElementsAre(HasSubstr("'" + key + "' in " + file_.string() +
                                                         " stays as it was: ")));
        return false;
    }

    /// The stored values are there for this store and for a new process.
    void expectAllThatWasStored(const UserDefaults& settings) const {
        EXPECT_EQ(settings.dictionaryRepresentation(), stored_);
        Worker other({name_});
        EXPECT_EQ(other.ask("count"), std::to_string(stored_.size()));
        for (const auto& [key, value] : stored_) {
            EXPECT_EQ(other.ask("get " + key), description(value));
        }
    }

    /// Large writes are refused, for a new key and an old one.
    void expectToBeReadAlone(UserDefaults& settings) {
        const std::string much(100'000, 'x');
        EXPECT_FALSE(isStored(settings, much, stored_.begin()->first));
        EXPECT_FALSE(isStored(settings, much, "never before"));
        expectAllThatWasStored(settings);
    }

    void expectToWorkAgain(UserDefaults& settings) {
        EXPECT_TRUE(isStored(settings, 1, "again"));
        EXPECT_TRUE(isStored(settings, std::string(100'000, 'l'), "large"));
        Worker other({name_});
        EXPECT_EQ(other.ask("set theirs 5"), "done");
        EXPECT_EQ(settings.integer("theirs"), 5);
        stored_.insert_or_assign("theirs", 5);
        expectAllThatWasStored(settings);
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
        EXPECT_THAT(setAside(file_), IsEmpty());
    }

    void expectToWorkOnceThereIsRoom(UserDefaults& settings) {
        disk_.makeRoom();
        expectToWorkAgain(settings);
    }

    /// A new suite is refused with one line.
    static void expectNoOther() {
        const CapturedOutput errors(2);
        EXPECT_EQ(UserDefaults::suiteName("another"), nullptr);
        EXPECT_THAT(lines(errors),
                    ElementsAre(HasSubstr("The suite 'another' cannot be opened: ")));
    }

    SmallDisk& disk_ = SmallDisk::shared();
    PropertyList::Dictionary stored_;
};

TEST_F(SmallDiskTest, KeepsAllStoredValues) {
    const auto settings = open();
    for (int number = 0; number < 20; ++number) {
        ASSERT_TRUE(isStored(*settings, number, std::to_string(number)));
    }
    disk_.fill();
    // A small value may fit into a half-filled page.
    for (int number = 0; number < 20; ++number) {
        isStored(*settings, -1 - number, std::to_string(number));
    }
    expectToBeReadAlone(*settings);
    expectToWorkOnceThereIsRoom(*settings);
}

TEST_F(SmallDiskTest, ShowsTheValuesOfOtherProcesses) {
    const auto settings = open();
    ASSERT_TRUE(isStored(*settings, 1, "key"));
    EXPECT_EQ(Worker({name_}).ask("set theirs 5"), "done");
    disk_.fill();
    {
        const CapturedOutput errors(2);
        settings->set(std::string(100'000, 'x'), "key");
        EXPECT_THAT(lines(errors), ElementsAre(HasSubstr(" stays as it was: ")));
    }
    stored_.insert_or_assign("theirs", 5);
    expectAllThatWasStored(*settings);
}

TEST_F(SmallDiskTest, KeepsAllAcceptedValuesWhileItFillsUp) {
    const auto settings = open();
    Worker other({name_});
    int refusals = 0;
    for (int number = 0; refusals < 5; ++number) {
        const auto key = "key" + std::to_string(number);
        const auto size = static_cast<std::size_t>(number * 37 % 20'000);
        refusals += isStored(*settings, std::string(size, 'v'), key) ? 0 : 1;
        if (number % 10 == 0) {
            EXPECT_EQ(other.ask("count"), std::to_string(stored_.size()));
        }
    }
    EXPECT_GT(stored_.size(), 20U);
    expectAllThatWasStored(*settings);
    expectToWorkOnceThereIsRoom(*settings);
}

TEST_F(SmallDiskTest, StoresAllOfAChangeOrNothing) {
    const auto settings = open();
    ASSERT_TRUE(isStored(*settings, 1, "key"));
    const auto change = [&](bool replacesAll) {
        DefaultsDomain::Changes changes{{"key", 2}};
        for (int number = 0; number < 100; ++number) {
            changes.emplace("key" + std::to_string(number), std::string(30'000, 'v'));
        }
        DefaultsDomain(file_.string()).change(changes, replacesAll);
    };
    for (const bool replacesAll : {false, true}) {
        EXPECT_THROW(change(replacesAll), NSError);
        expectAllThatWasStored(*settings);
    }
    disk_.makeRoom();
    change(true);
    EXPECT_EQ(settings->dictionaryRepresentation().size(), 101U);
    EXPECT_EQ(Worker({name_}).ask("count"), "101");
}

TEST_F(SmallDiskTest, RefusesANewSuiteUntilThereIsRoom) {
    ASSERT_TRUE(isStored(*open(), "there", "key"));
    disk_.fill();
    expectNoOther();
    EXPECT_FALSE(std::filesystem::exists(suiteFile("another")));
    disk_.makeRoom();
    const auto another = UserDefaults::suiteName("another");
    ASSERT_NE(another, nullptr);
    another->set(5, "key");
    EXPECT_EQ(Worker({"another"}).ask("get key"), "5");
    expectToWorkAgain(*open());
}

TEST_F(SmallDiskTest, IsReadWhileItIsReadOnly) {
    ASSERT_TRUE(isStored(*open(), "there", "key"));
    Worker first({name_});
    EXPECT_EQ(first.ask("get key"), "there");
    disk_.protect();
    const auto settings = open();
    ASSERT_NE(settings, nullptr);
    expectToBeReadAlone(*settings);
    EXPECT_FALSE(isStored(*settings, 5, "new"));
    expectNoOther();
    expectToWorkOnceThereIsRoom(*settings);
}

}  // namespace
}  // namespace orvalo::testing
