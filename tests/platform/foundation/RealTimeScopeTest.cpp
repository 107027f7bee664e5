#include "platform/foundation/RealTimeScope.h"

#include <gtest/gtest.h>

#include <thread>

namespace orvalo {
namespace {

TEST(RealTimeScope, NestsAndBelongsToItsThread) {
    EXPECT_FALSE(RealTimeScope::isActive());
    {
        const RealTimeScope outer;
        {
            const RealTimeScope inner;
            EXPECT_TRUE(RealTimeScope::isActive());
        }
        EXPECT_TRUE(RealTimeScope::isActive());
        bool elsewhere = true;
        std::thread([&] { elsewhere = RealTimeScope::isActive(); }).join();
        EXPECT_FALSE(elsewhere);
    }
    EXPECT_FALSE(RealTimeScope::isActive());
}

}  // namespace
}  // namespace orvalo
