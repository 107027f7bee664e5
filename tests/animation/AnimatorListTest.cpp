#include "animation/AnimatorList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "animation/Animator.h"

namespace orvalo {
namespace {

using Item = AnimatorList::Item;
using Items = std::vector<Item>;

Items make(std::size_t count) {
    Items result(count);
    std::generate(result.begin(), result.end(), [] { return std::make_shared<Animator>(); });
    return result;
}

Items walked(AnimatorList& list) {
    Items result;
    list.walk([&result](const Item& item) { result.push_back(item); });
    return result;
}

TEST(AnimatorList, IsEmptyInitially) {
    AnimatorList list;
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.items(), Items{});
    EXPECT_EQ(walked(list), Items{});
}

TEST(AnimatorList, KeepsOrderAndDuplicates) {
    const auto animators = make(2);
    AnimatorList list;
    const Items order{animators[1], animators[0], animators[1], animators[1]};
    for (const auto& animator : order) {
        list.append(animator);
    }
    EXPECT_EQ(list.count(), 4);
    EXPECT_EQ(list.items(), order);
    EXPECT_EQ(walked(list), order);
}

TEST(AnimatorList, RemovesTheFirstEntryOfAnAnimatorOnly) {
    const auto animators = make(2);
    AnimatorList list;
    for (const auto& animator : {animators[0], animators[1], animators[0], animators[0]}) {
        list.append(animator);
    }
    EXPECT_TRUE(list.removeFirst(animators[0]));
    EXPECT_EQ(list.items(), (Items{animators[1], animators[0], animators[0]}));
    EXPECT_TRUE(list.removeFirst(animators[1]));
    EXPECT_EQ(list.items(), (Items{animators[0], animators[0]}));
    EXPECT_FALSE(list.removeFirst(animators[1]));
    EXPECT_EQ(list.count(), 2);
}

TEST(AnimatorList, ReleasesRemovedAnimators) {
    AnimatorList list;
    std::weak_ptr<Animator> removed;
    std::weak_ptr<Animator> emptied;
    {
        const auto animators = make(3);
        removed = animators[0];
        emptied = animators[1];
        for (const auto& animator : animators) {
            list.append(animator);
        }
    }
    list.removeFirst(removed.lock());
    EXPECT_TRUE(removed.expired());
    EXPECT_FALSE(emptied.expired());
    list.removeAll();
    EXPECT_TRUE(emptied.expired());
    EXPECT_TRUE(list.isEmpty());
}

TEST(AnimatorList, WalkSeesTheListAsItWasAtTheStart) {
    const auto animators = make(4);
    AnimatorList list;
    for (const auto& animator : {animators[0], animators[1], animators[2]}) {
        list.append(animator);
    }
    Items seen;
    list.walk([&](const Item& item) {
        seen.push_back(item);
        list.removeFirst(animators[2]);
        list.append(animators[3]);
    });
    EXPECT_EQ(seen, (Items{animators[0], animators[1], animators[2]}));
    EXPECT_EQ(list.items(),
              (Items{animators[0], animators[1], animators[3], animators[3], animators[3]}));
}

TEST(AnimatorList, WalkContinuesAfterRemoveAll) {
    AnimatorList list;
    for (const auto& animator : make(3)) {
        list.append(animator);
    }
    int visits = 0;
    list.walk([&](const Item& item) {
        list.removeAll();
        EXPECT_FALSE(list.contains(item));
        visits += item->isFinished() ? 1 : 0;
    });
    EXPECT_EQ(visits, 3);
}

TEST(AnimatorList, NestedWalkSeesTheChangedList) {
    const auto animators = make(3);
    AnimatorList list;
    for (const auto& animator : animators) {
        list.append(animator);
    }
    std::vector<Items> inner;
    list.walk([&](const Item& item) {
        list.removeFirst(item);
        inner.push_back(walked(list));
    });
    EXPECT_EQ(inner, (std::vector<Items>{{animators[1], animators[2]}, {animators[2]}, Items{}}));
}

/// Compares long random sequences of operations with a plain vector.
TEST(AnimatorList, BehavesLikeAPlainList) {
    constexpr std::size_t animatorCount = 12;
    const auto animators = make(animatorCount);
    std::mt19937 random(20);  // std::mt19937 gives the same sequence on every machine.
    const auto any = [&](std::size_t below) { return random() % below; };
    for (int round = 0; round < 50; ++round) {
        AnimatorList list;
        Items plain;
        for (int step = 0; step < 200; ++step) {
            const auto& animator = animators[any(animatorCount)];
            // Rounds with more additions and rounds with more removals alternate.
            if (any(3) < (round % 2 == 0 ? 2U : 1U)) {
                list.append(animator);
                plain.push_back(animator);
            } else {
                const auto found = std::find(plain.begin(), plain.end(), animator);
                EXPECT_EQ(list.removeFirst(animator), found != plain.end());
                if (found != plain.end()) {
                    plain.erase(found);
                }
            }
            ASSERT_EQ(list.count(), std::ssize(plain));
            ASSERT_EQ(list.contains(animator),
                      std::find(plain.begin(), plain.end(), animator) != plain.end());
            ASSERT_EQ(list.items(), plain);
            if (any(4) == 0) {
                ASSERT_EQ(walked(list), plain);
            }
        }
    }
}

}  // namespace
}  // namespace orvalo
