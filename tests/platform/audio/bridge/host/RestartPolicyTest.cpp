#include "platform/audio/bridge/host/ServiceSupervisor.h"

#include <gtest/gtest.h>

namespace {

using namespace orvalo;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr RestartPolicy::Clock::time_point kStart{std::chrono::hours(5)};

TEST(RestartPolicy, TheThirdDeathWithinAMinuteIsTheLast) {
    RestartPolicy policy(3, seconds(60));
    EXPECT_TRUE(policy.mayRestartAfterDeath(kStart));
    EXPECT_TRUE(policy.mayRestartAfterDeath(kStart + seconds(1)));
    EXPECT_FALSE(policy.mayRestartAfterDeath(kStart + seconds(60) - milliseconds(1)));
}

TEST(RestartPolicy, DeathsAMinuteOldDoNotCount) {
    RestartPolicy policy(3, seconds(60));
    EXPECT_TRUE(policy.mayRestartAfterDeath(kStart));
    EXPECT_TRUE(policy.mayRestartAfterDeath(kStart + seconds(59)));
    EXPECT_TRUE(policy.mayRestartAfterDeath(kStart + seconds(60)));
    EXPECT_FALSE(policy.mayRestartAfterDeath(kStart + seconds(61)));
}

TEST(RestartPolicy, RareDeathsNeverEndTheRestarts) {
    RestartPolicy policy(3, seconds(60));
    for (int death = 0; death < 1000; ++death) {
        EXPECT_TRUE(policy.mayRestartAfterDeath(kStart + death * seconds(30)));
    }
}

TEST(RestartPolicy, WithALimitOfOneTheFirstDeathIsTheLast) {
    EXPECT_FALSE(RestartPolicy(1, seconds(60)).mayRestartAfterDeath(kStart));
}

}  // namespace
