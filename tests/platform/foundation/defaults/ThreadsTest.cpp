#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/foundation/defaults/SuiteFile.h"

namespace orvalo::testing {
namespace {

class Threads : public SuiteFile {};

TEST_F(Threads, ReadAndWriteOneSuiteTogether) {
    const auto settings = open();
    constexpr int kWrites = 200;
    constexpr int kThreads = 4;
    std::atomic<int> torn = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int self = 0; self < kThreads; ++self) {
        threads.emplace_back([&, self] {
            const auto own = "key " + std::to_string(self);
            for (int number = 1; number <= kWrites; ++number) {
                settings->set(number, own);
                settings->set(std::string(static_cast<std::size_t>(number % 10), 'x'), "common");
                const auto common = settings->string("common");
                torn += settings->integer(own) != number ? 1 : 0;
                torn += !common || common->find_first_not_of('x') != std::string::npos ? 1 : 0;
                torn += settings->dictionaryRepresentation().empty() ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(torn, 0);
    for (int self = 0; self < kThreads; ++self) {
        EXPECT_EQ(settings->integer("key " + std::to_string(self)), kWrites);
    }
}

TEST_F(Threads, OpenAndCloseASuiteTogether) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    std::atomic<int> absent = 0;
    open()->set(1, "key");
    for (int self = 0; self < 4; ++self) {
        threads.emplace_back([&] {
            for (int round = 0; round < 30; ++round) {
                const auto settings = open();
                absent += settings == nullptr || settings->integer("key") != 1 ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(absent, 0);
}

TEST_F(Threads, AddSuitesWhileOthersRead) {
    const auto standard = UserDefaults::standard();
    open()->set(7, "in the added suite");
    std::atomic<bool> isDone = false;
    std::thread reader([&] {
        while (!isDone) {
            standard->integer("in the added suite");
            standard->dictionaryRepresentation();
        }
    });
    for (int count = 0; count < 5; ++count) {
        standard->addSuiteNamed(newSuiteName());
    }
    standard->addSuiteNamed(name_);
    isDone = true;
    reader.join();
    EXPECT_EQ(standard->integer("in the added suite"), 7);
    open()->removeObject("in the added suite");
}

}  // namespace
}  // namespace orvalo::testing
