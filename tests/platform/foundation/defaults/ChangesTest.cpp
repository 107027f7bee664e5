#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <random>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"

// Changes of several entries together.

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Property;
using ::testing::StrEq;
using ::testing::Throws;
using Dictionary = PropertyList::Dictionary;

class Change : public SuiteFile {
  protected:
    Change() {
        settings_->set(1, "kept");
        settings_->set(2, "set");
    }

    void change(const DefaultsDomain::Changes& changes, bool replacesAll = false) const {
        DefaultsDomain(file_.string()).change(changes, replacesAll);
    }

    /// For an open store and for a new process.
    void expectEntries(const Dictionary& entries) const {
        EXPECT_EQ(settings_->dictionaryRepresentation(), entries);
        Worker other({name_});
        EXPECT_EQ(other.ask("count"), std::to_string(entries.size()));
        for (const auto& [key, value] : entries) {
            EXPECT_EQ(other.ask("get " + key), description(value));
        }
    }

    const std::shared_ptr<UserDefaults> settings_ = open();
};

TEST_F(Change, SetsAndRemovesItsKeysOnly) {
    change({{"set", 3}, {"new", "x"}});
    expectEntries({{"kept", 1}, {"new", "x"}, {"set", 3}});
    change({{"set", std::nullopt}, {"never", std::nullopt}, {"new", 5}});
    expectEntries({{"kept", 1}, {"new", 5}});
    change({});
    expectEntries({{"kept", 1}, {"new", 5}});
}

TEST_F(Change, ReplacingAllRemovesOtherKeys) {
    change({{"set", 3}, {"new", "x"}}, true);
    expectEntries({{"new", "x"}, {"set", 3}});
    change({}, true);
    expectEntries({});
    settings_->set(1, "kept");
    expectEntries({{"kept", 1}});
}

TEST_F(Change, KeepsWhatOtherProcessesHaveSet) {
    Worker other({name_});
    EXPECT_EQ(other.ask("set theirs 7"), "done");
    change({{"mine", 8}});
    EXPECT_EQ(other.ask("get mine"), "8");
    expectEntries({{"kept", 1}, {"mine", 8}, {"set", 2}, {"theirs", 7}});
    EXPECT_EQ(other.ask("set theirs 9"), "done");
    change({{"mine", 10}}, true);
    EXPECT_EQ(other.ask("get theirs"), "absent");
    expectEntries({{"mine", 10}});
}

TEST_F(Change, ChangesNothingWhenOneValueIsRefused) {
    const auto refuses = [](const std::string& reason) {
        return Throws<NSError>(Property(&NSError::localizedDescription, StrEq(reason)));
    };
    for (const bool replacesAll : {false, true}) {
        EXPECT_THAT(([&] {
                        change({{"a", 1}, {"bad", "\xFF"}, {"set", 9}}, replacesAll);
                    }),
                    refuses("'bad': a text in it is not UTF-8 or holds a NUL"));
        EXPECT_THAT(([&] {
                        change({{"a", 1}, {"\xFF", 5}}, replacesAll);
                    }),
                    refuses("'\xFF': its key is not UTF-8 or holds a NUL"));
        expectEntries({{"kept", 1}, {"set", 2}});
    }
}

TEST_F(Change, ChangesNothingWhenSQLiteFailsInTheMiddle) {
    // SQLite refuses the third insertion.
    query(file_,
          "CREATE TRIGGER third BEFORE INSERT ON entries WHEN NEW.key = 'third' "
          "BEGIN SELECT RAISE(ABORT, 'not this one'); END");
    for (const bool replacesAll : {false, true}) {
        EXPECT_THAT(
            ([&] {
                change({{"set", 9}, {"new", 1}, {"third", 3}, {"z", 4}}, replacesAll);
            }),
            Throws<NSError>(Property(&NSError::localizedDescription, HasSubstr("not this one"))));
        expectEntries({{"kept", 1}, {"set", 2}});
    }
    query(file_, "DROP TRIGGER third");
    change({{"third", 3}});
    expectEntries({{"kept", 1}, {"set", 2}, {"third", 3}});
}

// The worker sets all keys to 1, then to 2, and so on.
TEST_F(Change, IsCompleteForReadersAndAfterAKill) {
    constexpr std::size_t kKeys = 60;
    std::mt19937 random(7);
    const auto number = [&] {
        const auto entries = settings_->dictionaryRepresentation();
        EXPECT_EQ(entries.size(), kKeys);
        for (const auto& [key, value] : entries) {
            EXPECT_EQ(value, entries.begin()->second) << key;
        }
        return *entries.begin()->second.as<std::int64_t>();
    };
    for (int round = 0; round < 40; ++round) {
        Worker writer({name_, "together", std::to_string(kKeys)});
        auto acknowledged = std::stoll(writer.readLine());
        std::int64_t seen = acknowledged;
        for (auto looks = random() % 8; looks > 0; --looks) {
            const auto next = number();
            EXPECT_GE(next, seen);
            seen = next;
        }
        writer.signal(SIGKILL);
        EXPECT_EQ(writer.wait(), -SIGKILL);
        for (std::string line; !(line = writer.readLine()).empty();) {
            acknowledged = std::stoll(line);
        }
        const auto there = number();
        EXPECT_GE(there, std::max<std::int64_t>(acknowledged, seen));
        EXPECT_LE(there, acknowledged + 1);
    }
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
}

}  // namespace
}  // namespace orvalo::testing
