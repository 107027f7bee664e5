#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/Hammer.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/programs/play/Program.h"
#include "tests/programs/play/Staged.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;

class KilledWriters : public SuiteFile {
  protected:
    using Numbers = std::vector<std::int64_t>;

    /// Has a process write rising numbers to a key, and kills it in the middle. Returns the number
    /// that is there then.
    std::int64_t killAWriter(const std::string& key, std::int64_t first) {
        Program writer({program_, name_, "write", key, std::to_string(first)});
        auto acknowledged = writer.readUntil(std::to_string(first));
        // It dies wherever it is by then.
        std::this_thread::sleep_for(std::chrono::microseconds(random_() % 3000));
        writer.signal(SIGKILL);
        EXPECT_EQ(writer.wait(), -SIGKILL) << writer.standardError();
        for (auto& line : writer.readAll()) {
            acknowledged.push_back(std::move(line));
        }
        const auto last = std::stoll(acknowledged.at(acknowledged.size() - 1));
        const auto there = Hammer::numberOf(settings_->object(key)).value_or(0);
        EXPECT_GE(there, last);
        EXPECT_LE(there, last + 1);
        return there;
    }

    std::shared_ptr<UserDefaults> settings_ = open();
    std::string program_ = staged("defaults_witness");
    std::mt19937 random_{7};
};

TEST_F(KilledWriters, takeNothingBackThatAReaderInAnotherProcessHasSeen) {
    const std::vector<std::string> keys{"one", "two", "three"};
    Program reader({program_, name_, "watch", keys[0], keys[1], keys[2]});
    Numbers numbers(keys.size());
    for (std::size_t round = 1; round <= 100; ++round) {
        auto& number = numbers[round % keys.size()];
        number = killAWriter(keys[round % keys.size()], number + 1);
        settings_->set(static_cast<std::int64_t>(round), "round");
        const auto line = std::to_string(round) + " " + std::to_string(numbers[0]) + " " +
                          std::to_string(numbers[1]) + " " + std::to_string(numbers[2]);
        ASSERT_THAT(reader.readUntil(line), ElementsAre(line)) << reader.standardError();
    }
    reader.signal(SIGTERM);
    EXPECT_EQ(reader.wait(), -SIGTERM) << reader.standardError();
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
}

}  // namespace
}  // namespace orvalo::testing
