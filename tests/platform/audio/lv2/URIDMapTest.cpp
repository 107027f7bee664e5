#include "platform/audio/lv2/URIDMap.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

namespace {

using orvalo::URIDMap;

TEST(URIDMap, MapsAURIToOneNumberAndBack) {
    auto& map = URIDMap::shared();
    const auto first = map.map("urn:test:first");
    const auto second = map.map("urn:test:second");
    EXPECT_GT(first, 0U);
    EXPECT_NE(first, second);
    EXPECT_EQ(map.map("urn:test:first"), first);
    EXPECT_STREQ(map.unmap(first), "urn:test:first");
    EXPECT_STREQ(map.unmap(second), "urn:test:second");
    EXPECT_EQ(map.map(std::string("urn:test:first").c_str()), first);
}

TEST(URIDMap, ReturnsNullForAnUnknownNumber) {
    auto& map = URIDMap::shared();
    EXPECT_EQ(map.unmap(0), nullptr);
    EXPECT_EQ(map.unmap(URIDMap::kCapacity), nullptr);
    EXPECT_EQ(map.unmap(4294967295U), nullptr);
}

TEST(URIDMap, AdoptsTheNumbersOfAnotherProcess) {
    auto& map = URIDMap::shared();
    auto uris = map.uris();
    map.map("urn:test:listed");
    ASSERT_EQ(map.uris().back(), "urn:test:listed");
    ASSERT_EQ(map.map("urn:test:listed"), map.uris().size());
    EXPECT_TRUE(map.adopt(uris));
    uris = map.uris();
    uris.emplace_back("urn:test:adopted");
    EXPECT_TRUE(map.adopt(uris));
    EXPECT_EQ(map.uris(), uris);
    std::swap(uris.front(), uris.back());
    EXPECT_FALSE(map.adopt(uris));
}

TEST(URIDMap, AgreesBetweenThreads) {
    constexpr int kCount = 2000;
    std::array<std::vector<LV2_URID>, 4> numbers;
    std::vector<std::thread> threads;
    threads.reserve(numbers.size());
    for (auto& own : numbers) {
        threads.emplace_back([&own] {
            auto& map = URIDMap::shared();
            for (int uri = 0; uri < kCount; ++uri) {
                const auto text = "urn:test:threads#" + std::to_string(uri);
                own.push_back(map.map(text.c_str()));
                ASSERT_EQ(map.unmap(own.back()), text);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& own : numbers) {
        EXPECT_EQ(own, numbers[0]);
    }
}

}  // namespace
