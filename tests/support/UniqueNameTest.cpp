#include "support/UniqueName.h"

#include <gtest/gtest.h>

#include <set>

namespace orvalo {
namespace {

constexpr std::size_t kUniqueSize = 36;  // a UUID's text

TEST(UniqueName, StartsWithThePrefixAndAHyphen) {
    const auto first = uniqueName("snapshot");
    const auto second = uniqueName("snapshot");
    EXPECT_EQ(first.substr(0, 9), "snapshot-");
    EXPECT_EQ(second.substr(0, 9), "snapshot-");
    EXPECT_EQ(first.size(), 9 + kUniqueSize);
    EXPECT_NE(first, second);
}

TEST(UniqueName, HasNoHyphenInFrontWithoutAPrefix) {
    const auto name = uniqueName();
    EXPECT_EQ(name.size(), kUniqueSize);
    EXPECT_NE(name.front(), '-');
    EXPECT_EQ(uniqueName(std::nullopt).size(), kUniqueSize);
}

TEST(UniqueName, StartsWithAHyphenForAnEmptyPrefix) {
    const auto name = uniqueName("");
    EXPECT_EQ(name.front(), '-');
    EXPECT_EQ(name.size(), 1 + kUniqueSize);
}

TEST(UniqueName, KeepsThePrefixUnchanged) {
    for (const std::string prefix : {"-", "a-b", " Malé\n", "100%"}) {
        EXPECT_EQ(uniqueName(prefix).substr(0, prefix.size() + 1), prefix + "-");
    }
}

TEST(UniqueName, DiffersForEveryCall) {
    std::set<std::string> seen;
    for (int count = 0; count < 1000; ++count) {
        seen.insert(uniqueName());
        seen.insert(uniqueName("x"));
    }
    EXPECT_EQ(seen.size(), 2000U);
}

}  // namespace
}  // namespace orvalo
