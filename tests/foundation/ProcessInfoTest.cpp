#include "platform/foundation/ProcessInfo.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace orvalo {
namespace {

TEST(ProcessInfo, KnowsThisProcess) {
    const auto& info = ProcessInfo::processInfo();
    EXPECT_EQ(info.processName(), "foundation_test");
    EXPECT_EQ(info.processIdentifier(), getpid());
    EXPECT_EQ(&info, &ProcessInfo::processInfo());
}

}  // namespace
}  // namespace orvalo
