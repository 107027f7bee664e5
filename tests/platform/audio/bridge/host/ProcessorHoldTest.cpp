#include "platform/audio/bridge/host/ProcessorHold.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace orvalo;
using Processors = std::vector<int>;

constexpr ProcessorHold::Time kBegin{std::chrono::hours(1)};
constexpr std::chrono::milliseconds kShort{1};

Processors ofThisThread() {
    cpu_set_t set;
    sched_getaffinity(0, sizeof(set), &set);
    Processors result;
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (CPU_ISSET(static_cast<unsigned>(processor), &set)) {
            result.push_back(processor);
        }
    }
    return result;
}

void restrictTo(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<unsigned>(processor), &set);
    sched_setaffinity(0, sizeof(set), &set);
}

/// Each runs on a thread of its own, which takes what was done to it along.
template <typename Body>
void onThread(Body body) {
    std::thread(body).join();
}

class ProcessorHoldTest : public ::testing::Test {
  protected:
    const Processors all_ = ofThisThread();
    ProcessorHold hold_;
};

TEST_F(ProcessorHoldTest, KeepsTheThreadWhereItIs) {
    onThread([this] {
        const int here = hold_.keep(kBegin);
        EXPECT_EQ(here, sched_getcpu());
        EXPECT_EQ(ofThisThread(), Processors{here});
        EXPECT_EQ(hold_.keep(kBegin + ProcessorHold::kLength - kShort), here);
        EXPECT_EQ(ofThisThread(), Processors{here});
    });
}

TEST_F(ProcessorHoldTest, LetsItGoForAQuantumAndHoldsItAnew) {
    onThread([this] {
        hold_.keep(kBegin);
        hold_.keep(kBegin + ProcessorHold::kLength);
        EXPECT_EQ(ofThisThread(), all_);
        restrictTo(all_.back());
        const auto next = kBegin + ProcessorHold::kLength + kShort;
        EXPECT_EQ(hold_.keep(next), all_.back());
        hold_.keep(next + ProcessorHold::kLength);
        EXPECT_EQ(ofThisThread(), Processors{all_.back()}) << "no more than it was allowed";
    });
}

TEST_F(ProcessorHoldTest, IsEndedByAnotherThread) {
    onThread([this] {
        hold_.keep(kBegin);
        onThread([this] { hold_.letGo(); });
        EXPECT_EQ(ofThisThread(), all_);
    });
    onThread([this] { hold_.letGo(); });
}

TEST_F(ProcessorHoldTest, LeavesWhatOthersHaveSaidMeanwhile) {
    onThread([this] {
        const int here = hold_.keep(kBegin);
        const int elsewhere = here == all_.front() ? all_.back() : all_.front();
        restrictTo(elsewhere);
        hold_.keep(kBegin + ProcessorHold::kLength);
        EXPECT_EQ(ofThisThread(), Processors{elsewhere});
    });
}

}  // namespace
