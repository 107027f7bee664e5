#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <set>
#include <stop_token>
#include <string>
#include <thread>

#include "tests/platform/foundation/defaults/SuiteFile.h"

// The thread sanitizer takes locks that are held across a fork for the parent's.
#ifndef __SANITIZE_THREAD__

namespace orvalo::testing {
namespace {

class Forks : public SuiteFile {
  protected:
    /// Whether a child of this moment can do all that one does with a search list.
    bool isChildWhole() const {
        const auto child = fork();
        if (child == 0) {
            constexpr unsigned kPatience = 30;  // s, for a child that waits for nobody
            alarm(kPatience);
            const auto standard = UserDefaults::standard();
            standard->addSuiteNamed(name_);
            const bool isFound = standard->integer("number of the suite") == 7;
            standard->set(8, "number of its own");
            _exit(isFound && standard->integer("number of its own") == 8 ? 0 : 1);
        }
        int status = 0;
        return waitpid(child, &status, 0) == child && status == 0;
    }
};

TEST_F(Forks, whileThreadsReadTheSearchListLeaveItToTheChild) {
    const auto standard = UserDefaults::standard();
    // A fork takes the suites in the order of their names: so it meets a reader, rather than lets
    // it go ahead.
    std::set<std::string, std::greater<>> names;
    while (names.size() < 8) {
        names.insert(newSuiteName());
    }
    for (const auto& name : names) {
        standard->addSuiteNamed(name);
    }
    const auto suite = open();
    suite->set(7, "number of the suite");
    std::atomic<int> reads = 0;
    std::jthread reader([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            standard->integer("number that nobody has");
            ++reads;
        }
    });
    while (reads == 0) {
        std::this_thread::yield();
    }
    for (int round = 0; round < 50; ++round) {
        ASSERT_TRUE(isChildWhole()) << round;
    }
    reader.request_stop();
    reader.join();
    EXPECT_EQ(standard->object("number of the suite"), std::nullopt);
    EXPECT_EQ(standard->integer("number of its own"), 8);
    standard->addSuiteNamed(name_);
    EXPECT_EQ(standard->integer("number of the suite"), 7);
    suite->removeObject("number of the suite");
    standard->removeObject("number of its own");
}

}  // namespace
}  // namespace orvalo::testing

#endif
