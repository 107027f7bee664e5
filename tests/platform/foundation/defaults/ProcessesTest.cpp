#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <list>
#include <random>
#include <sstream>
#include <thread>

#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/Hammer.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;

/// A number from the environment, for longer runs by hand.
int ofEnvironment(const char* name, int otherwise) {
    const char* text = getenv(name);
    return text == nullptr ? otherwise : std::atoi(text);
}

class Processes : public SuiteFile {
  protected:
    void hammer(int count) {
        const auto seconds = ofEnvironment("ORVALO_HAMMER_SECONDS", 1);
        std::list<Worker> workers;
        for (int self = 0; self < count; ++self) {
            workers.emplace_back(std::vector<std::string>{name_, "hammer", std::to_string(self),
                                                          std::to_string(count),
                                                          std::to_string(seconds)});
        }
        const auto settings = open();
        for (auto& worker : workers) {
            std::istringstream last(worker.readLine());
            EXPECT_EQ(worker.wait(), 0);
            int keys = 0;
            for (std::string pair; std::getline(last, pair, ';'); ++keys) {
                const auto equals = pair.find('=');
                const auto number = Hammer::numberOf(settings->object(pair.substr(0, equals)));
                EXPECT_EQ(std::to_string(number.value_or(0)), pair.substr(equals + 1)) << pair;
            }
            EXPECT_EQ(keys, 5);
        }
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
    }
};

TEST_F(Processes, SeeTheWritesOfOthersAtTheNextRead) {
    const auto settings = open();
    Worker other({name_});
    EXPECT_EQ(other.ask("get key"), "absent");
    for (int number = 0; number < 200; ++number) {
        settings->set(number, "key");
        EXPECT_EQ(other.ask("get key"), std::to_string(number));
        EXPECT_EQ(other.ask("set answer " + std::to_string(number)), "done");
        EXPECT_EQ(settings->integer("answer"), number);
    }
    settings->removeObject("key");
    EXPECT_EQ(other.ask("get key"), "absent");
    EXPECT_EQ(other.ask("remove answer"), "done");
    EXPECT_EQ(settings->object("answer"), std::nullopt);
}

TEST_F(Processes, TwoLoseAndTearNoValue) {
    hammer(2);
}

TEST_F(Processes, EightLoseAndTearNoValue) {
    hammer(8);
}

TEST_F(Processes, KilledWritersLoseNoAcknowledgedValue) {
    const auto settings = open();
    std::mt19937 random(5);
    const int kills = ofEnvironment("ORVALO_KILLS", 200);
    for (int round = 0; round < kills; ++round) {
        const auto key = "key" + std::to_string(round % 3);
        settings->removeObject(key);
        Worker writer({name_, "endless", key});
        // The first line shows that the process has started to write.
        std::int64_t acknowledged = std::atoll(writer.readLine().c_str());
        ASSERT_GT(acknowledged, 0);
        // Kills the writer at a random point of its work.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        const auto seen = settings->integer(key);
        writer.signal(SIGKILL);
        EXPECT_EQ(writer.wait(), -SIGKILL);
        for (std::string line; !(line = writer.readLine()).empty();) {
            acknowledged = std::atoll(line.c_str());
        }
        const auto there = settings->integer(key);
        EXPECT_GE(there, acknowledged);
        EXPECT_LE(there, acknowledged + 1);
        EXPECT_GE(there, seen);
        // A new process reads the same value as this process.
        EXPECT_EQ(Worker({name_}).ask("get " + key), std::to_string(there));
        if (round % 20 == 0) {
            EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
        }
    }
    EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
}

TEST_F(Processes, KilledCreatorsLeaveNoDamagedFile) {
    std::mt19937 random(6);
    const int kills = ofEnvironment("ORVALO_KILLS", 200) / 4;
    for (int round = 0; round < kills; ++round) {
        const auto name = newSuiteName();
        {
            Worker writer({name, "endless", "key"});
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
            writer.signal(SIGKILL);
            writer.wait();
        }
        // A damaged file would be logged, which ends the worker.
        Worker next({name});
        const auto number = next.ask("get key");
        EXPECT_TRUE(number == "absent" || std::atoll(number.c_str()) > 0) << number;
        EXPECT_EQ(next.ask("set key 5"), "done");
        EXPECT_EQ(UserDefaults::suiteName(name)->integer("key"), 5);
        EXPECT_THAT(query(suiteFile(name), "PRAGMA integrity_check"), ElementsAre("ok"));
    }
}

}  // namespace
}  // namespace orvalo::testing
