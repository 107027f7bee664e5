#include "platform/foundation/WorkItem.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <utility>

namespace orvalo {
namespace {

struct Large {
    std::array<char, WorkItem::inlineCapacity> bytes{};
    std::shared_ptr<int> held;
    int* runs = nullptr;
    void operator()() const { ++*runs; }
};

struct Largest {
    std::array<char, WorkItem::inlineCapacity> bytes;
    void operator()() const {}
};

struct Throwing {
    Throwing() = default;
    Throwing(Throwing&& /*other*/) noexcept(false) {}
    void operator()() const {}
};

static_assert(WorkItem::fitsInline<Largest>());
static_assert(!WorkItem::fitsInline<Large>());
static_assert(!WorkItem::fitsInline<Throwing>());

TEST(WorkItem, IsEmptyWithoutAClosure) {
    WorkItem item;
    EXPECT_FALSE(item);
    item.reset();
    EXPECT_FALSE(item);
}

TEST(WorkItem, RunsAndReleasesASmallClosure) {
    int runs = 0;
    auto held = std::make_shared<int>();
    WorkItem item([&runs, held] { ++runs; });
    EXPECT_TRUE(item);
    item();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(held.use_count(), 2);
    item.reset();
    EXPECT_FALSE(item);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkItem, RunsAndReleasesALargeClosure) {
    int runs = 0;
    auto held = std::make_shared<int>();
    {
        WorkItem item(Large{{}, held, &runs});
        WorkItem moved(std::move(item));
        moved();
        EXPECT_EQ(held.use_count(), 2);
    }
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkItem, AcceptsAMoveOnlyClosure) {
    int value = 0;
    WorkItem first([&value, number = std::make_unique<int>(5)] { value = *number; });
    WorkItem second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved item is an empty one.
    first = std::move(second);
    first();
    EXPECT_EQ(value, 5);
}

TEST(WorkItem, ReleasesItsClosureWhenAssigned) {
    auto held = std::make_shared<int>();
    WorkItem item([held] {});
    item = WorkItem([] {});
    EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace orvalo
