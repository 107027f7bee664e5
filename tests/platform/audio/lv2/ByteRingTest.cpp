#include "platform/audio/lv2/ByteRing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

namespace {

using orvalo::ByteRing;

TEST(ByteRing, ReturnsMessagesWholeAndInOrderAcrossTheEnd) {
    ByteRing ring(32);
    std::vector<std::uint8_t> read(ring.capacity());
    std::uint32_t size = 0;
    for (std::uint8_t round = 0; round < 50; ++round) {
        const std::vector<std::uint8_t> first{round, 1, 2, 3, 4, 5, 6};
        const std::vector<std::uint8_t> second{9, round};
        ASSERT_TRUE(ring.write(7, first.data()));
        ASSERT_TRUE(ring.write(0, first.data()));
        ASSERT_TRUE(ring.write(2, second.data()));
        ASSERT_TRUE(ring.read(size, read.data()));
        EXPECT_EQ(std::vector<std::uint8_t>(read.begin(), read.begin() + size), first);
        ASSERT_TRUE(ring.read(size, read.data()));
        EXPECT_EQ(size, 0U);
        ASSERT_TRUE(ring.read(size, read.data()));
        EXPECT_EQ(std::vector<std::uint8_t>(read.begin(), read.begin() + size), second);
        ASSERT_FALSE(ring.read(size, read.data()));
    }
}

TEST(ByteRing, RefusesAMessageThatDoesNotFit) {
    ByteRing ring(16);
    const std::vector<std::uint8_t> bytes(13, 7);
    std::vector<std::uint8_t> read(ring.capacity());
    std::uint32_t size = 0;
    EXPECT_FALSE(ring.write(13, bytes.data()));
    EXPECT_FALSE(ring.write(UINT32_MAX, bytes.data()));
    EXPECT_FALSE(ring.read(size, read.data()));
    EXPECT_TRUE(ring.write(12, bytes.data()));
    EXPECT_FALSE(ring.write(0, bytes.data()));
    EXPECT_TRUE(ring.read(size, read.data()));
    EXPECT_EQ(size, 12U);
}

TEST(ByteRing, CarriesMessagesBetweenTwoThreads) {
    constexpr std::uint32_t kCount = 20000;
    ByteRing ring(64);
    std::thread writer([&ring] {
        for (std::uint32_t number = 0; number < kCount;) {
            if (ring.write(sizeof(number), &number)) {
                ++number;
            } else {
                std::this_thread::yield();
            }
        }
    });
    std::vector<std::uint8_t> read(ring.capacity());
    for (std::uint32_t expected = 0; expected < kCount;) {
        std::uint32_t size = 0;
        if (ring.read(size, read.data())) {
            std::uint32_t number = 0;
            std::memcpy(&number, read.data(), sizeof(number));
            ASSERT_EQ(number, expected);
            ++expected;
        } else {
            std::this_thread::yield();
        }
    }
    writer.join();
}

}  // namespace
