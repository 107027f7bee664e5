#include "animation/AnimatorChain.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tests/animation/Counting.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {

/// Access to a chain's private state.
struct AnimatorChainPeer {
    static std::int64_t& currentIndex(AnimatorChain& chain) { return chain._currentIndex; }
    static std::int64_t& direction(AnimatorChain& chain) { return chain._direction; }
};

namespace {

using testing::CapturedOutput;
using testing::counting;
using testing::kNoMembers;
using testing::Lines;
using testing::Members;
using testing::record;
using testing::tick;
using Peer = AnimatorChainPeer;

const auto chainOf = testing::groupOf<AnimatorChain>;

/// A chain of the members, with its callbacks recorded.
std::shared_ptr<AnimatorChain> recorded(const Members& members, Lines& lines) {
    auto chain = testing::recordedGroupOf<AnimatorChain>(members, lines);
    chain->onFinished = [&lines](const auto& self) {
        lines.push_back("finished at " + std::to_string(self->getCurrentIndex()));
    };
    return chain;
}

TEST(AnimatorChain, IsEmptyForwardsAtIndex0Initially) {
    const auto chain = std::make_shared<AnimatorChain>();
    EXPECT_EQ(chain->getCount(), 0);
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    EXPECT_EQ(chain->getCurrentItem(), nullptr);
    EXPECT_EQ(Peer::direction(*chain), 1);
    EXPECT_EQ(chain->interval, 0.005F);
    EXPECT_FALSE(chain->async);
    EXPECT_FALSE(chain->onAnimation || chain->onFinished);
}

TEST(AnimatorChain, RunsItsMembersOneAfterTheOther) {
    Lines lines;
    const Members members{counting(1), counting(1)};
    const auto chain = recorded(members, lines);
    record(members[0], "A", lines);
    record(members[1], "B", lines);
    tick(*chain);
    EXPECT_EQ(lines, (Lines{"before A", "A leaves 0"}));
    EXPECT_EQ(chain->getCurrentItem(), members[0]);
    tick(*chain);
    EXPECT_EQ(lines.back(), "A ends at 1");
    EXPECT_EQ(chain->getCurrentIndex(), 1);
    EXPECT_EQ(chain->getCurrentItem(), members[1]);
    EXPECT_EQ(members[1]->getValue(), 0);
    lines.clear();
    tick(*chain, 2);
    EXPECT_EQ(lines, (Lines{"before B", "B leaves 0", "before B", "B ends at 1", "finished at 2"}));
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    EXPECT_EQ(chain->getCount(), 2);
}

TEST(AnimatorChain, SkipsAMemberThatWasNeverSetUpAfterOneTick) {
    Lines lines;
    const Members members{std::make_shared<Animator>(), counting(1)};
    const auto chain = recorded(members, lines);
    tick(*chain, 2);
    EXPECT_EQ(lines, (Lines{"before A", "before B"}));
}

TEST(AnimatorChain, BackwardsEndsWithoutRunningTheFirstMember) {
    Lines lines;
    const Members members{counting(1), counting(1), counting(1)};
    const auto chain = recorded(members, lines);
    Peer::currentIndex(*chain) = 2;
    chain->setBackwards(true);
    EXPECT_EQ(chain->getCurrentIndex(), 2);
    tick(*chain, 4);
    EXPECT_EQ(lines, (Lines{"before C", "before C", "before B", "before B", "finished at 0"}));
    EXPECT_FALSE(members[0]->isFinished());
    EXPECT_TRUE(members[1]->isFinished());
}

TEST(AnimatorChain, SwitchedBackwardsWhileRunningRunsItsMembersInReverse) {
    Lines lines;
    const Members members{counting(1), counting(1), counting(1)};
    const auto chain = recorded(members, lines);
    tick(*chain, 4);
    chain->setBackwards(true);
    lines.clear();
    tick(*chain, 3);
    EXPECT_EQ(lines, (Lines{"before C", "before C", "before B", "finished at 0"}));
}

TEST(AnimatorChain, BackwardsAtIndex0StepsThatMemberOnceAndEnds) {
    Lines lines;
    const Members members{counting(9), counting(9)};
    const auto chain = recorded(members, lines);
    chain->setBackwards(true);
    tick(*chain);
    EXPECT_EQ(lines, (Lines{"before A", "finished at 0"}));
    EXPECT_EQ(members[0]->getValue(), 1);
}

TEST(AnimatorChain, BackwardsWithAFinishedFirstMemberFinishesAtIndexMinus1) {
    Lines lines;
    const auto chain = recorded({std::make_shared<Animator>(), counting(1)}, lines);
    chain->setBackwards(true);
    tick(*chain);
    EXPECT_EQ(lines, (Lines{"before A", "finished at -1"}));
    EXPECT_EQ(chain->getCurrentIndex(), 0);
}

TEST(AnimatorChain, SetBackwardsKeepsTheIndex) {
    const auto chain = chainOf({counting(1), counting(1)});
    Peer::currentIndex(*chain) = 1;
    chain->setBackwards(true);
    EXPECT_EQ(Peer::direction(*chain), -1);
    chain->setBackwards(false);
    EXPECT_EQ(Peer::direction(*chain), 1);
    EXPECT_EQ(chain->getCurrentIndex(), 1);
}

TEST(AnimatorChain, ReplacesAnIndexOutsideTheListByTheLastOne) {
    for (const std::int64_t index : {-7, -1, 3, 99}) {
        Lines lines;
        const auto chain = recorded({counting(2), counting(2), counting(2)}, lines);
        Peer::currentIndex(*chain) = index;
        EXPECT_EQ(chain->getCurrentItem(), nullptr);
        tick(*chain);
        EXPECT_EQ(lines, Lines{"before C"}) << index;
        EXPECT_EQ(chain->getCurrentIndex(), 2);
    }
}

TEST(AnimatorChain, RemoveAllMayReleaseTheLastReference) {
    auto owner = chainOf({counting(5)});
    const std::weak_ptr<AnimatorChain> watched = owner;
    auto& chain = *owner;
    chain.start();
    owner = nullptr;
    chain.removeAll();
    EXPECT_TRUE(watched.expired());
}

TEST(AnimatorChain, IgnoresNullAndRemovesTheFirstEntry) {
    const Members members{counting(1), counting(2)};
    const auto chain = chainOf({members[0], nullptr, members[1], members[0]});
    EXPECT_EQ(chain->getCount(), 3);
    Peer::currentIndex(*chain) = 1;
    chain->remove(members[0]);
    EXPECT_EQ(chain->getCount(), 2);
    EXPECT_EQ(chain->getCurrentIndex(), 1);
    EXPECT_EQ(chain->getCurrentItem(), members[0]);
    chain->remove(nullptr);
    EXPECT_EQ(chain->getCount(), 2);
}

TEST(AnimatorChain, RemovingANonMemberEndsTheProgram) {
    const auto chain = chainOf({counting(1)});
    EXPECT_DEATH(chain->remove(counting(1)),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST(AnimatorChain, RemoveAllStopsAndRemovesTheMembers) {
    std::weak_ptr<Animator> member;
    const auto chain = std::make_shared<AnimatorChain>();
    {
        const auto made = counting(1);
        chain->add(made);
        chain->add(made);
        member = made;
    }
    Peer::currentIndex(*chain) = 1;
    chain->setBackwards(true);
    chain->async = true;
    chain->removeAll();
    EXPECT_EQ(chain->getCount(), 0);
    EXPECT_TRUE(member.expired());
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    EXPECT_EQ(Peer::direction(*chain), -1);
    EXPECT_TRUE(chain->async);
}

TEST(AnimatorChain, StopKeepsMembersModeAndDirection) {
    const auto chain = chainOf({counting(1), counting(1)});
    chain->async = true;
    chain->setBackwards(true);
    Peer::currentIndex(*chain) = 1;
    chain->stop();
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    EXPECT_EQ(chain->getCount(), 2);
    EXPECT_EQ(Peer::direction(*chain), -1);
    EXPECT_TRUE(chain->async);
}

TEST(AnimatorChain, WarnsOnEveryTickAndNeverFinishesWithoutMembers) {
    Lines lines;
    const auto chain = recorded({}, lines);
    const CapturedOutput output;
    tick(*chain, 3);
    EXPECT_EQ(output.lines(), Lines(3, kNoMembers));
    EXPECT_EQ(lines, Lines{});
}

TEST(AnimatorChain, StartContinuesAtTheCurrentIndex) {
    Lines lines;
    const auto chain = recorded({counting(5), counting(5)}, lines);
    chain->interval = 0.001F;
    Peer::currentIndex(*chain) = 1;
    chain->start();
    EXPECT_TRUE(testing::waitUntil([&lines] { return !lines.empty(); }));
    chain->stop();
    EXPECT_EQ(lines.front(), "before B");
}

TEST(AnimatorChain, AsynchronousStartsOneMemberPerTickAndKeepsThemRunning) {
    Lines lines;
    const Members members{counting(3), counting(3), counting(3)};
    for (const auto& member : members) {
        member->setInterval(0.001F);
    }
    const auto chain = recorded(members, lines);
    chain->async = true;
    tick(*chain, 2);
    EXPECT_EQ(lines, (Lines{"before A", "before B"}));
    EXPECT_EQ(members[0]->getValue(), 0);
    tick(*chain);
    EXPECT_EQ(lines, (Lines{"before A", "before B", "before C", "finished at 3"}));
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    EXPECT_TRUE(testing::waitUntil([&members] { return members[2]->isFinished(); }));
    EXPECT_TRUE(testing::waitUntil(
        [&members] { return members[0]->isFinished() && members[1]->isFinished(); }));
    EXPECT_EQ(members[0]->getValue(), 3);
}

TEST(AnimatorChain, AsynchronousBackwardsEndsAtIndex0) {
    Lines lines;
    const auto chain = recorded(
        {std::make_shared<Animator>(), std::make_shared<Animator>(), std::make_shared<Animator>()},
        lines);
    chain->async = true;
    chain->setBackwards(true);
    Peer::currentIndex(*chain) = 2;
    std::vector<std::shared_ptr<Animator>> started;
    chain->onAnimation = [&started](const auto&, const auto& item) { started.push_back(item); };
    tick(*chain, 2);
    EXPECT_EQ(lines, Lines{"finished at 0"});
    for (const auto& animator : started) {
        animator->stop();
    }
    EXPECT_EQ(started.size(), 2U);
}

TEST(AnimatorChain, StepsTheMemberAtTheIndexAfterARemoval) {
    Lines lines;
    const Members members{counting(5), counting(5), counting(5)};
    const auto chain = recorded(members, lines);
    Peer::currentIndex(*chain) = 1;
    chain->remove(members[1]);
    tick(*chain);
    EXPECT_EQ(lines, Lines{"before C"});
}

TEST(AnimatorChain, RemovalDuringATickCountsForTheEnd) {
    Lines lines;
    const Members members{counting(5), counting(5), counting(5)};
    const auto chain = recorded(members, lines);
    Peer::currentIndex(*chain) = 2;
    chain->onAnimation = [](const auto& self, const auto& item) { self->remove(item); };
    tick(*chain);
    EXPECT_EQ(members[2]->getValue(), 1);
    EXPECT_EQ(lines, Lines{"finished at 2"});
}

TEST(AnimatorChain, FinishesTheTickAfterItsCallbackRemovedAll) {
    Lines lines;
    const Members members{counting(5)};
    const auto chain = recorded(members, lines);
    chain->onAnimation = [](const auto& self, const auto&) { self->removeAll(); };
    tick(*chain);
    EXPECT_EQ(members[0]->getValue(), 1);
    EXPECT_EQ(lines, Lines{"finished at 0"});
}

TEST(AnimatorChain, EndsAgainWhenTheEndTurnsItRound) {
    Lines lines;
    const auto chain = recorded({counting(0)}, lines);
    int ends = 0;
    chain->onFinished = [&ends](const auto& self) {
        ++ends;
        self->setBackwards(true);
    };
    tick(*chain);
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(chain->getCurrentIndex(), 0);
}

TEST(AnimatorChain, EndsOnceWhenTheEndTurnsItForwards) {
    Lines lines;
    const auto chain = recorded({counting(5)}, lines);
    chain->setBackwards(true);
    int ends = 0;
    chain->onFinished = [&ends](const auto& self) {
        ++ends;
        self->setBackwards(false);
    };
    tick(*chain);
    EXPECT_EQ(ends, 1);
}

TEST(AnimatorChain, IndexBeyond64BitsEndsTheProgram) {
    const auto chain = chainOf({std::make_shared<Animator>()});
    chain->onAnimation = [](const auto& self, const auto&) {
        Peer::currentIndex(*self) = std::numeric_limits<std::int64_t>::max();
    };
    EXPECT_DEATH(tick(*chain), "Fatal error: Integer overflow in an addition");
}

TEST(AnimatorChain, UsesOverriddenOperationsOfItsMembers) {
    const auto member = std::make_shared<testing::TwoSteps>();
    const auto chain = chainOf({member, counting(1)});
    tick(*chain);
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    tick(*chain);
    EXPECT_EQ(member->steps, 2);
    EXPECT_EQ(chain->getCurrentIndex(), 1);
    chain->stop();
    chain->async = true;
    tick(*chain);
    EXPECT_EQ(member->starts, 1);
}

}  // namespace
}  // namespace orvalo
