#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/bridge/service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr std::chrono::seconds kPatience{30};

/// The thread of that name in that process; 0 when there is none.
pid_t threadOf(pid_t process, const std::string& name) {
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream file(entry.path() / "comm");
        if (std::string comm; std::getline(file, comm) && comm == name) {
            return std::stoi(entry.path().filename());
        }
    }
    return 0;
}

class ServiceProcessor : public ::testing::Test {
  protected:
    void SetUp() override {
        sched_getaffinity(0, sizeof(all_), &all_);
        effect_.mustInstantiate();
    }

    /// Renders until the service's audio thread may be on these processors only.
    bool comesTo(const cpu_set_t& wanted) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (std::chrono::steady_clock::now() < deadline) {
            effect_.renderQuantum(64);
            const auto thread = threadOf(effect_.service.id(), "effect-audio");
            cpu_set_t set;
            if (sched_getaffinity(thread, sizeof(set), &set) == 0 && CPU_EQUAL(&set, &wanted)) {
                return true;
            }
        }
        return false;
    }

    HostedEffect effect_{ORVALO_ZOO, "urn:orvalo:zoo:probe"};
    cpu_set_t all_{};
};

TEST_F(ServiceProcessor, FollowsTheHostsRenderThread) {
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (CPU_ISSET(static_cast<unsigned>(processor), &all_)) {
            cpu_set_t only;
            CPU_ZERO(&only);
            CPU_SET(static_cast<unsigned>(processor), &only);
            effect_.audio().control().processor = processor;
            EXPECT_TRUE(comesTo(only)) << processor;
        }
    }
    effect_.audio().control().processor = -1;
    EXPECT_TRUE(comesTo(all_)) << "anywhere again";
}

TEST_F(ServiceProcessor, IsAnywhereWhenThereIsNoSuchProcessor) {
    effect_.audio().control().processor = CPU_SETSIZE;
    EXPECT_TRUE(comesTo(all_));
    effect_.audio().control().processor = CPU_SETSIZE - 1;
    EXPECT_TRUE(comesTo(all_));
}

}  // namespace
