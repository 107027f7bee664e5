#include "animation/AnimatorStack.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/animation/Counting.h"

namespace orvalo {
namespace {

using testing::counting;
using testing::groupOf;
using testing::Lines;
using testing::Members;
using testing::nameOf;
using testing::record;
using testing::tick;

/// A stack of the members, with its callbacks recorded.
std::shared_ptr<AnimatorStack> recorded(const Members& members, Lines& lines) {
    auto stack = testing::recordedGroupOf<AnimatorStack>(members, lines);
    stack->onRemovedItem = [&lines, members](const auto& self, const auto& item) {
        lines.push_back("removed " + nameOf(item, members) + ", " +
                        std::to_string(self->getCount()) + " left");
    };
    stack->onFinished = [&lines](const auto& self) {
        lines.push_back("finished with " + std::to_string(self->getCount()));
    };
    return stack;
}

TEST(AnimatorStack, IsEmptyWithAnIntervalOf5MillisecondsInitially) {
    const auto stack = std::make_shared<AnimatorStack>();
    EXPECT_EQ(stack->getCount(), 0);
    EXPECT_EQ(stack->getItems(), Members{});
    EXPECT_EQ(stack->interval, 0.005F);
    EXPECT_FALSE(stack->onAnimation || stack->onFinished || stack->onRemovedItem);
}

TEST(AnimatorStack, AddsInOrderAndIgnoresNull) {
    const auto stack = std::make_shared<AnimatorStack>();
    const Members members{counting(2), counting(1)};
    stack->add(members[0]);
    stack->add(nullptr);
    stack->add(members[1]);
    stack->add(members[0]);
    EXPECT_EQ(stack->getCount(), 3);
    auto items = stack->getItems();
    EXPECT_EQ(items, (Members{members[0], members[1], members[0]}));
    items.clear();
    EXPECT_EQ(stack->getCount(), 3);
}

TEST(AnimatorStack, StepsItsMembersSideBySideInOrder) {
    Lines lines;
    const Members members{counting(2), counting(4)};
    const auto stack = recorded(members, lines);
    record(members[0], "A", lines);
    record(members[1], "B", lines);
    tick(*stack, 2);
    EXPECT_EQ(lines, (Lines{"before A", "A leaves 0", "before B", "B leaves 0",  //
                            "before A", "A leaves 1", "before B", "B leaves 1"}));
    lines.clear();
    tick(*stack);
    EXPECT_EQ(lines, (Lines{"before A", "A ends at 2", "removed A, 1 left",  //
                            "before B", "B leaves 2"}));
    lines.clear();
    tick(*stack, 2);
    EXPECT_EQ(lines, (Lines{"before B", "B leaves 3",  //
                            "before B", "B ends at 4", "removed B, 0 left"}));
    lines.clear();
    tick(*stack);
    EXPECT_EQ(lines, Lines{"finished with 0"});
}

TEST(AnimatorStack, FinishesOnEveryTickWithoutMembers) {
    Lines lines;
    const auto stack = recorded({}, lines);
    tick(*stack, 2);
    EXPECT_EQ(lines, (Lines{"finished with 0", "finished with 0"}));
}

TEST(AnimatorStack, SkipsAndKeepsAMemberThatWasFinishedBefore) {
    Lines lines;
    const Members members{std::make_shared<Animator>(), counting(1)};
    const auto stack = recorded(members, lines);
    record(members[0], "A", lines);
    tick(*stack, 3);
    EXPECT_EQ(lines, (Lines{"before B", "before B", "removed B, 1 left", "finished with 1"}));
    EXPECT_EQ(stack->getCount(), 0);
}

TEST(AnimatorStack, NeverFinishesWithALoopedMember) {
    Lines lines;
    const auto stack = recorded({testing::endless()}, lines);
    tick(*stack, 100);
    EXPECT_EQ(lines, Lines(100, "before A"));
    EXPECT_EQ(stack->getCount(), 1);
}

TEST(AnimatorStack, StepsAMemberOncePerEntry) {
    Lines lines;
    const auto animator = counting(4);
    const auto stack = recorded({animator, animator}, lines);
    tick(*stack, 2);
    EXPECT_EQ(animator->getValue(), 4);
    EXPECT_EQ(stack->getCount(), 2);
    lines.clear();
    tick(*stack);
    EXPECT_EQ(lines, (Lines{"before A", "removed A, 1 left"}));
    EXPECT_EQ(stack->getItems(), Members{animator});
    tick(*stack);
    EXPECT_EQ(lines.back(), "finished with 1");
    EXPECT_EQ(stack->getCount(), 0);
}

TEST(AnimatorStack, RemovesTheFirstEntryOfAMemberThatEndsAtItsSecond) {
    Lines lines;
    const Members members{counting(3), counting(9)};
    const auto stack = recorded({members[0], members[1], members[0]}, lines);
    tick(*stack, 2);
    EXPECT_EQ(stack->getItems(), (Members{members[1], members[0]}));
}

TEST(AnimatorStack, MemberAddedDuringATickIsSteppedFromTheNextTickOn) {
    Lines lines;
    const auto late = counting(3);
    const auto stack = recorded({counting(3)}, lines);
    stack->onAnimation = [&late](const auto& self, const auto&) {
        self->onAnimation = nullptr;
        self->add(late);
    };
    tick(*stack);
    EXPECT_EQ(stack->getCount(), 2);
    EXPECT_EQ(late->getValue(), 0);
    tick(*stack);
    EXPECT_EQ(late->getValue(), 1);
}

TEST(AnimatorStack, ReportsEachRemovalAsItHappens) {
    constexpr int memberCount = 100;
    Members left;
    for (int index = 0; index < memberCount; ++index) {
        left.push_back(counting(1));
    }
    const auto stack = groupOf<AnimatorStack>(left);
    stack->onRemovedItem = [&left](const auto& self, const auto& item) {
        ASSERT_EQ(item, left.front());
        left.erase(left.begin());
        ASSERT_EQ(self->getItems(), left);
    };
    tick(*stack);
    EXPECT_EQ(stack->getCount(), memberCount);
    tick(*stack);
    EXPECT_EQ(stack->getCount(), 0);
    EXPECT_TRUE(left.empty());
}

TEST(AnimatorStack, StopRemovesTheMembersWithoutACallback) {
    Lines lines;
    const auto stack = recorded({counting(5), counting(5)}, lines);
    stack->stop();
    EXPECT_EQ(stack->getCount(), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST(AnimatorStack, FinishesTheTickAfterACallbackStoppedIt) {
    Lines lines;
    const Members members{counting(5), counting(5)};
    const auto stack = recorded(members, lines);
    stack->onAnimation = [](const auto& self, const auto&) { self->stop(); };
    tick(*stack);
    EXPECT_EQ(members[0]->getValue(), 1);
    EXPECT_EQ(members[1]->getValue(), 1);
    EXPECT_EQ(stack->getCount(), 0);
    EXPECT_EQ(lines, Lines{});
}

TEST(AnimatorStack, MemberThatEndsAfterACallbackRemovedItEndsTheProgram) {
    const auto stack = groupOf<AnimatorStack>({counting(1)});
    tick(*stack);
    stack->onAnimation = [](const auto& self, const auto&) { self->stop(); };
    EXPECT_DEATH(tick(*stack),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST(AnimatorStack, CanBeFilledAndRunAgain) {
    Lines lines;
    const auto stack = recorded({counting(1)}, lines);
    tick(*stack, 3);
    stack->add(counting(2));
    tick(*stack, 4);
    EXPECT_EQ(lines,
              (Lines{"before A", "before A", "removed A, 0 left", "finished with 0", "before ?",
                     "before ?", "before ?", "removed ?, 0 left", "finished with 0"}));
}

TEST(AnimatorStack, RemovesMembersAddedByOnFinished) {
    Lines lines;
    const auto stack = recorded({}, lines);
    stack->onFinished = [](const auto& self) { self->add(counting(1)); };
    tick(*stack);
    EXPECT_EQ(stack->getCount(), 0);
}

TEST(AnimatorStack, StopsAfterOnFinishedHasStartedIt) {
    const auto stack = std::make_shared<AnimatorStack>();
    stack->interval = 0.001F;
    stack->onFinished = [](const auto& self) {
        self->onFinished = nullptr;
        self->start();
    };
    const std::weak_ptr<AnimatorStack> watched = stack;
    tick(*stack);
    // A running timer would hold it, too.
    EXPECT_EQ(watched.use_count(), 1);
}

TEST(AnimatorStack, UsesOverriddenOperationsOfItsMembers) {
    const auto member = std::make_shared<testing::TwoSteps>();
    const auto stack = groupOf<AnimatorStack>({member});
    tick(*stack);
    EXPECT_EQ(stack->getCount(), 1);
    tick(*stack);
    EXPECT_EQ(member->steps, 2);
    EXPECT_EQ(stack->getCount(), 0);
}

}  // namespace
}  // namespace orvalo
