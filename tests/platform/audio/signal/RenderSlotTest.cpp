#include "platform/audio/signal/RenderSlot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace orvalo::testing {
namespace {

TEST(RenderSlotTest, IsEmptyAtFirst) {
    RenderSlot<int> slot;
    EXPECT_EQ(slot.current(), nullptr);
    EXPECT_FALSE(RenderSlot<int>::Access(slot));
    EXPECT_EQ(slot.exchange(std::make_unique<int>(3)), nullptr);
    const RenderSlot<int>::Access access(slot);
    ASSERT_TRUE(access);
    EXPECT_EQ(*access, 3);
    EXPECT_EQ(slot.current(), access.operator->());
}

TEST(RenderSlotTest, ExchangeReturnsTheOldObject) {
    RenderSlot<int> slot(std::make_unique<int>(1));
    EXPECT_EQ(*slot.exchange(std::make_unique<int>(2)), 1);
    EXPECT_EQ(*slot.exchange(nullptr), 2);
    EXPECT_EQ(slot.current(), nullptr);
}

TEST(RenderSlotTest, ExchangeWaitsForTheOpenAccess) {
    RenderSlot<int> slot(std::make_unique<int>(1));
    std::atomic<bool> hasReturned{false};
    auto next = std::make_unique<int>(2);
    const int* const nextPlace = next.get();
    std::jthread control;
    {
        const RenderSlot<int>::Access access(slot);
        control = std::jthread([&] {
            const auto old = slot.exchange(std::move(next));
            hasReturned = true;
        });
        while (slot.current() != nextPlace) {
            std::this_thread::yield();
        }
        // The slot holds the new object; this access still holds the old one.
        for (int turn = 0; turn < 1000; ++turn) {
            std::this_thread::yield();
            ASSERT_FALSE(hasReturned);
        }
        EXPECT_EQ(*access, 1);
    }
    control.join();
    EXPECT_TRUE(hasReturned);
}

TEST(RenderSlotTest, DestroysTheLastObject) {
    const auto watched = std::make_shared<int>(1);
    {
        const RenderSlot<std::shared_ptr<int>> slot(
            std::make_unique<std::shared_ptr<int>>(watched));
        EXPECT_EQ(watched.use_count(), 2);
    }
    EXPECT_EQ(watched.use_count(), 1);
}

TEST(RenderSlotTest, TheRenderThreadNeverSeesAReturnedObject) {
    struct Plan {
        explicit Plan(int value) : first(value), second(value) {}
        ~Plan() { first = second = -1; }
        int first;
        int second;
        int uses = 0;  // Written by the render thread, read by the control thread afterwards.
    };
    constexpr int kExchanges = 2000;
    RenderSlot<Plan> slot(std::make_unique<Plan>(0));
    std::atomic<bool> isDone{false};
    std::atomic<int> seen{-1};
    int wrong = 0;
    std::jthread render([&] {
        int latest = 0;
        while (!isDone) {
            const RenderSlot<Plan>::Access access(slot);
            ++access->uses;
            wrong += access->first != access->second || access->first < latest ? 1 : 0;
            latest = access->first;
            seen = latest;
        }
    });
    long uses = 0;
    for (int value = 1; value <= kExchanges; ++value) {
        uses += slot.exchange(std::make_unique<Plan>(value))->uses;
        while (value % 100 == 0 && seen != value) {
            std::this_thread::yield();
        }
    }
    isDone = true;
    render.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(seen, kExchanges);
    EXPECT_GT(uses, 0);
}

}  // namespace
}  // namespace orvalo::testing
