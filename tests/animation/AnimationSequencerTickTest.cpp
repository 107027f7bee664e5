#include "animation/AnimationSequencer.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "tests/animation/Counting.h"
#include "tests/animation/Sequence.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo {
namespace {

using testing::CapturedOutput;
using testing::counting;
using testing::kNoMembers;
using testing::Lines;
using testing::Members;
using testing::record;
using testing::recorded;
using testing::sequence;
using testing::tickOn;
using Peer = AnimationSequencerPeer;

TEST(AnimationSequencer, StartsFrames0And1OnTheFirstTickAndOthersOnTheirOwn) {
    Lines lines;
    const auto sequencer = recorded({{counting(1), 0}, {counting(2), 1}, {counting(1), 3}}, lines);
    tickOn(*sequencer, 4);
    EXPECT_EQ(lines, (Lines{"1: before A", "1: before B",  //
                            "2: before A", "2: before B",  //
                            "3: before B", "3: before C",  //
                            "4: before C", "4: finished with 0"}));
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
}

TEST(AnimationSequencer, CallsBackBeforeEachStepAndDropsFinishedAnimators) {
    Lines lines;
    const Members made{counting(1), counting(2)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    record(made[0], "A", lines);
    record(made[1], "B", lines);
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"1: before A", "A leaves 0", "1: before B", "B leaves 0"}));
    EXPECT_EQ(sequencer->getCurrentCount(), 2);
    lines.clear();
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"2: before A", "A ends at 1", "2: before B", "B leaves 1",
                            "2: finished with 1"}));
}

TEST(AnimationSequencer, FinishesOnTheTickOfItsLastFrameAfterTheSteps) {
    Lines lines;
    const Members made{counting(20), counting(10)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 30}}, lines);
    tickOn(*sequencer, 39);
    EXPECT_EQ(lines.back(), "39: before B");
    lines.clear();
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"40: before B", "40: finished with 0"}));
    EXPECT_EQ(made[1]->getValue(), 10);
    EXPECT_TRUE(made[1]->isFinished());
}

TEST(AnimationSequencer, KeepsUnfinishedAnimatorsScheduledAfterTheEnd) {
    const auto animator = counting(3);
    animator->looped = true;
    const auto sequencer = sequence({{animator, 0}});
    tickOn(*sequencer, 3);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    tickOn(*sequencer);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(AnimationSequencer, WarnsOnEveryTickAndNeverFinishesAfterRemoveAll) {
    Lines lines;
    const auto sequencer = recorded({{counting(2), 0}}, lines);
    tickOn(*sequencer);
    lines.clear();
    sequencer->removeAll();
    EXPECT_EQ(sequencer->getCount(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(sequencer->getCurrentFrame(), 1);
    const CapturedOutput output;
    tickOn(*sequencer, 2);
    EXPECT_EQ(output.lines(), Lines(2, kNoMembers));
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(sequencer->getCurrentFrame(), 3);
}

TEST(AnimationSequencer, StepsARemovedAnimatorUntilItEnds) {
    Lines lines;
    const Members made{counting(2), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    tickOn(*sequencer);
    sequencer->remove(made[0]);
    lines.clear();
    tickOn(*sequencer, 3);
    EXPECT_EQ(lines, (Lines{"2: before A", "2: before B", "3: before A", "3: before B",  //
                            "4: before B"}));
}

TEST(AnimationSequencer, SchedulesAnAnimatorWithTwoEntriesOnce) {
    Lines lines;
    const auto animator = counting(3);
    const auto sequencer = recorded({{animator, 0}, {animator, 0}}, lines);
    tickOn(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before A"});
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
}

TEST(AnimationSequencer, SchedulesAnAnimatorAgainThatIsSetUpAfterItsEnd) {
    Lines lines;
    const auto animator = counting(1);
    const auto sequencer = recorded({{counting(9), 0}, {animator, 0}}, lines);
    tickOn(*sequencer, 2);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    animator->setup(0, 1, 1);
    lines.clear();
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"3: before A", "3: before B"}));
}

TEST(AnimationSequencer, SearchesFromTheLastDueAnimator) {
    Lines lines;
    const Members made{counting(1), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    tickOn(*sequencer, 2);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    made[0]->setup(0, 1, 1);
    lines.clear();
    tickOn(*sequencer);
    EXPECT_EQ(lines, Lines{"3: before B"});
}

TEST(AnimationSequencer, SearchesPastAnAnimatorThatIsNotDue) {
    Lines lines;
    const Members made{counting(9), counting(9)};
    const auto sequencer = recorded({{made[0], 5}, {made[1], 8}}, lines);
    // A second sequencer changes the start frame, so the first one's order is no longer sorted.
    sequence({{made[1], 0}});
    tickOn(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before B"});
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
}

TEST(AnimationSequencer, SkipsAnimatorsFinishedBeforeTheirFrame) {
    Lines lines;
    const auto sequencer = recorded({{std::make_shared<Animator>(), 0}, {counting(5), 0}}, lines);
    tickOn(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before B"});
}

TEST(AnimationSequencer, IndexBeyondTheListEndsTheProgram) {
    const auto sequencer = sequence({{counting(1), 0}});
    Peer::currentIndex(*sequencer) = 2;
    EXPECT_DEATH(tickOn(*sequencer), "Fatal error: Range requires lowerBound <= upperBound");
}

TEST(AnimationSequencer, RemovalThatLeavesTheIndexBeyondTheListEndsTheProgram) {
    const Members made{counting(9), counting(9), counting(9)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 0}, {made[2], 0}});
    tickOn(*sequencer);
    sequencer->remove(made[0]);
    // An index right behind the list is allowed.
    tickOn(*sequencer);
    EXPECT_EQ(sequencer->getCurrentIndex(), 2);
    sequencer->remove(made[1]);
    EXPECT_DEATH(tickOn(*sequencer), "Fatal error: Range requires lowerBound <= upperBound");
}

TEST(AnimationSequencer, NullEntryEndsTheSearchWithALine) {
    Lines lines;
    const auto sequencer = recorded({{counting(3), 0}, {counting(3), 0}}, lines);
    Peer::animators(*sequencer).insert(Peer::animators(*sequencer).begin() + 1, nullptr);
    const CapturedOutput output;
    tickOn(*sequencer);
    EXPECT_EQ(output.text(), "ERROR: Animationsobjekt is undefiniert!\n");
    EXPECT_EQ(lines, Lines{"1: before A"});
}

TEST(AnimationSequencer, AnimatorAddedByACallbackStartsOnTheNextTick) {
    Lines lines;
    const auto late = counting(5);
    const auto sequencer = recorded({{counting(5), 0}}, lines);
    bool isAdded = false;
    sequencer->onAnimation = [&](const auto& self, const auto&) {
        if (!std::exchange(isAdded, true)) {
            self->add(late, 0);
        }
    };
    tickOn(*sequencer);
    EXPECT_EQ(late->getValue(), 0);
    tickOn(*sequencer);
    EXPECT_EQ(late->getValue(), 1);
}

TEST(AnimationSequencer, CallbackMayStopAnotherAnimator) {
    Lines lines;
    const Members made{counting(5), counting(5)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    record(made[1], "B", lines);
    const auto write = sequencer->onAnimation;
    sequencer->onAnimation = [&](const auto& self, const auto& item) {
        write(self, item);
        made[1]->stop();
    };
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"1: before A", "1: before B"}));
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(AnimationSequencer, NestedTickStepsEverythingOnceMore) {
    const Members made{counting(9), counting(9)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 0}});
    bool isInside = false;
    sequencer->onAnimation = [&](const auto& self, const auto&) {
        if (!std::exchange(isInside, true)) {
            self->animate();
        }
    };
    tickOn(*sequencer);
    EXPECT_EQ(made[0]->getValue(), 2);
    EXPECT_EQ(made[1]->getValue(), 2);
}

}  // namespace
}  // namespace orvalo
