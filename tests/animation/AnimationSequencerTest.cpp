#include "animation/AnimationSequencer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/animation/Counting.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo {

struct AnimationSequencerPeer {
    static auto& animators(AnimationSequencer& sequencer) { return sequencer._animators; }
    static std::int64_t& currentIndex(AnimationSequencer& sequencer) {
        return sequencer._currentIndex;
    }
    static std::int64_t& currentFrame(AnimationSequencer& sequencer) {
        return sequencer._currentFrame;
    }
    static std::int64_t maxFrames(const AnimationSequencer& sequencer) {
        return sequencer._maxFrames;
    }
};

namespace {

using testing::CapturedOutput;
using testing::counting;
using testing::Lines;
using testing::nameOf;
using testing::record;
using Members = std::vector<std::shared_ptr<Animator>>;
using Peer = AnimationSequencerPeer;

const std::string kWarning = "WARNUNG: Es sind keine Animator Objekte definiert.";
constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();

/// So many ticks, as the timer has them.
void tick(AnimationSequencer& sequencer, int count = 1) {
    for (int done = 0; done < count; ++done) {
        ++Peer::currentFrame(sequencer);
        sequencer.animate();
    }
}

struct Placed {
    std::shared_ptr<Animator> animator;
    std::int64_t frame;
};

std::shared_ptr<AnimationSequencer> sequence(const std::vector<Placed>& placed) {
    auto sequencer = std::make_shared<AnimationSequencer>();
    for (const auto& [animator, frame] : placed) {
        sequencer->add(animator, frame);
    }
    return sequencer;
}

/// A sequence that writes down every callback of its own.
std::shared_ptr<AnimationSequencer> recorded(const std::vector<Placed>& placed, Lines& lines) {
    auto sequencer = sequence(placed);
    Members members;
    for (const auto& entry : placed) {
        members.push_back(entry.animator);
    }
    sequencer->onAnimation = [&lines, members](const auto& self, const auto& item) {
        lines.push_back(std::to_string(self->getCurrentFrame()) + ": before " +
                        nameOf(item, members));
    };
    sequencer->onFinished = [&lines](const auto& self) {
        lines.push_back(std::to_string(self->getCurrentFrame()) + ": finished with " +
                        std::to_string(self->getCurrentCount()));
    };
    return sequencer;
}

TEST(AnimationSequencer, BeginsEmptyAtFrameZero) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    EXPECT_EQ(sequencer->getCount(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 0);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 0);
    EXPECT_EQ(sequencer->interval, 0.005F);
    EXPECT_FALSE(sequencer->onAnimation || sequencer->onFinished);
}

TEST(AnimationSequencer, OrdersItsAnimatorsByTheirFrameAndThenByTheirComing) {
    const Members made{counting(1), counting(1), counting(1), counting(1)};
    const auto sequencer = sequence({{made[0], 10}, {made[1], 0}, {made[2], 10}, {made[3], -5}});
    EXPECT_EQ(Peer::animators(*sequencer), (Members{made[3], made[1], made[0], made[2]}));
    EXPECT_EQ(sequencer->getCount(), 4);
}

TEST(AnimationSequencer, AnAnimatorAddedAgainStandsThereTwiceAtTheNewFrame) {
    const Members made{counting(1), counting(1)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 5}, {made[0], 10}});
    EXPECT_EQ(Peer::animators(*sequencer), (Members{made[1], made[0], made[0]}));
}

TEST(AnimationSequencer, RefusesTheAbsentWithALine) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const CapturedOutput output;
    sequencer->add(nullptr, 3);
    EXPECT_EQ(output.text(), "FEHLER: Das Animator Objekt ist ungültig.\n");
    EXPECT_EQ(sequencer->getCount(), 0);
}

TEST(AnimationSequencer, ItsLengthGrowsAndNeverShrinksBeforeEverythingIsRemoved) {
    const Members made{counting(20), counting(10)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 30}});
    EXPECT_EQ(Peer::maxFrames(*sequencer), 40);
    sequencer->remove(made[1]);
    EXPECT_EQ(sequencer->getCount(), 1);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 40);
    sequencer->removeAll();
    EXPECT_EQ(Peer::maxFrames(*sequencer), 0);
    EXPECT_EQ(sequencer->getCount(), 0);
}

TEST(AnimationSequencer, RemovingTheAbsentMeasuresTheLengthAnew) {
    const auto animator = counting(20);
    const auto sequencer = sequence({{animator, 5}});
    animator->setup(0, 1, 100);
    sequencer->remove(nullptr);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 105);
    EXPECT_EQ(sequencer->getCount(), 1);
}

TEST(AnimationSequencer, RemovesTheFirstEntryOnly) {
    const Members made{counting(1), counting(1)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 0}, {made[0], 0}});
    sequencer->remove(made[0]);
    EXPECT_EQ(Peer::animators(*sequencer), (Members{made[1], made[0]}));
}

TEST(AnimationSequencer, RemovingWhatIsNotThereEndsTheProgram) {
    const auto sequencer = sequence({{counting(1), 0}});
    EXPECT_DEATH(sequencer->remove(counting(1)),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST(AnimationSequencer, BeginsFramesZeroAndOneOnTheFirstTickAndEveryOtherOnItsOwn) {
    Lines lines;
    const auto sequencer = recorded({{counting(1), 0}, {counting(2), 1}, {counting(1), 3}}, lines);
    tick(*sequencer, 4);
    EXPECT_EQ(lines, (Lines{"1: before A", "1: before B",  //
                            "2: before A", "2: before B",  //
                            "3: before B", "3: before C",  //
                            "4: before C", "4: finished with 0"}));
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
}

TEST(AnimationSequencer, CallsBackBeforeEachStepAndDropsWhatHasEnded) {
    Lines lines;
    const Members made{counting(1), counting(2)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    record(made[0], "A", lines);
    record(made[1], "B", lines);
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"1: before A", "A leaves 0", "1: before B", "B leaves 0"}));
    EXPECT_EQ(sequencer->getCurrentCount(), 2);
    lines.clear();
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"2: before A", "A ends at 1", "2: before B", "B leaves 1",
                            "2: finished with 1"}));
}

TEST(AnimationSequencer, FinishesOnTheTickOfItsLastFrameAfterTheSteps) {
    Lines lines;
    const Members made{counting(20), counting(10)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 30}}, lines);
    tick(*sequencer, 39);
    EXPECT_EQ(lines.back(), "39: before B");
    lines.clear();
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"40: before B", "40: finished with 0"}));
    EXPECT_EQ(made[1]->getValue(), 10);
    EXPECT_TRUE(made[1]->isFinished());
}

TEST(AnimationSequencer, KeepsWhatHasNotEndedScheduledBeyondItsEnd) {
    const auto animator = counting(3);
    animator->looped = true;
    const auto sequencer = sequence({{animator, 0}});
    tick(*sequencer, 3);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    tick(*sequencer);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(AnimationSequencer, EmptiedWarnsOnEveryTickAndNeverFinishes) {
    Lines lines;
    const auto sequencer = recorded({{counting(2), 0}}, lines);
    tick(*sequencer);
    lines.clear();
    sequencer->removeAll();
    EXPECT_EQ(sequencer->getCount(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(sequencer->getCurrentFrame(), 1);
    const CapturedOutput output;
    tick(*sequencer, 2);
    EXPECT_EQ(output.lines(), Lines(2, kWarning));
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(sequencer->getCurrentFrame(), 3);
}

TEST(AnimationSequencer, StepsARemovedAnimatorUntilItEnds) {
    Lines lines;
    const Members made{counting(2), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    tick(*sequencer);
    sequencer->remove(made[0]);
    lines.clear();
    tick(*sequencer, 3);
    EXPECT_EQ(lines, (Lines{"2: before A", "2: before B", "3: before A", "3: before B",  //
                            "4: before B"}));
}

TEST(AnimationSequencer, SchedulesAnAnimatorOnceHoweverOftenItStandsThere) {
    Lines lines;
    const auto animator = counting(3);
    const auto sequencer = recorded({{animator, 0}, {animator, 0}}, lines);
    tick(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before A"});
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
}

TEST(AnimationSequencer, SchedulesAnAnimatorAgainThatIsSetUpAfterItsEnd) {
    Lines lines;
    const auto animator = counting(1);
    const auto sequencer = recorded({{counting(9), 0}, {animator, 0}}, lines);
    tick(*sequencer, 2);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    animator->setup(0, 1, 1);
    lines.clear();
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"3: before A", "3: before B"}));
}

TEST(AnimationSequencer, SearchesFromTheLastThatWasDueOn) {
    Lines lines;
    const Members made{counting(1), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    tick(*sequencer, 2);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    made[0]->setup(0, 1, 1);
    lines.clear();
    tick(*sequencer);
    EXPECT_EQ(lines, Lines{"3: before B"});
}

TEST(AnimationSequencer, SearchesBehindAnAnimatorThatIsNotDueYet) {
    Lines lines;
    const Members made{counting(9), counting(9)};
    const auto sequencer = recorded({{made[0], 5}, {made[1], 8}}, lines);
    // Placed anew by another sequence: this one's order is no longer that of the frames.
    sequence({{made[1], 0}});
    tick(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before B"});
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
}

TEST(AnimationSequencer, PassesOverWhatIsFinishedWhenItsFrameComes) {
    Lines lines;
    const auto sequencer = recorded({{std::make_shared<Animator>(), 0}, {counting(5), 0}}, lines);
    tick(*sequencer);
    EXPECT_EQ(lines, Lines{"1: before B"});
}

TEST(AnimationSequencer, APauseStopsTheStepsButNotTheFrames) {
    Lines lines;
    const Members made{counting(9), counting(9), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 3}, {made[2], 4}}, lines);
    tick(*sequencer);
    sequencer->pause();
    lines.clear();
    tick(*sequencer, 4);
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(sequencer->getCurrentFrame(), 5);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    sequencer->continue_();
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"6: before A", "6: before B", "6: before C"}));
}

TEST(AnimationSequencer, APauseHidesEvenTheWarning) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    sequencer->pause();
    const CapturedOutput output;
    tick(*sequencer);
    EXPECT_EQ(output.text(), "");
}

TEST(AnimationSequencer, AStopKeepsThePauseTheScheduleAndTheLength) {
    const auto sequencer = sequence({{counting(5), 0}});
    tick(*sequencer, 2);
    sequencer->pause();
    sequencer->stop();
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 5);
    tick(*sequencer, 5);
    EXPECT_EQ(sequencer->getCurrentFrame(), 5);
}

TEST(AnimationSequencer, RewindsEveryAnimatorAndNothingElse) {
    const Members made{counting(4), counting(4)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 2}});
    tick(*sequencer, 3);
    sequencer->rewind();
    for (const auto& animator : made) {
        EXPECT_EQ(animator->getValue(), 0);
        EXPECT_FALSE(animator->isFinished());
    }
    EXPECT_EQ(sequencer->getCurrentFrame(), 3);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    EXPECT_EQ(sequencer->getCurrentCount(), 2);
}

TEST(AnimationSequencer, SeeksByStoppingWhatBeganBeforeAndRewindingTheRest) {
    const Members made{counting(50), counting(50), counting(50)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 15}, {made[2], 30}});
    tick(*sequencer, 40);
    sequencer->seek(15);
    EXPECT_TRUE(made[0]->isFinished());
    EXPECT_EQ(made[0]->getValue(), 40);
    for (const auto& animator : {made[1], made[2]}) {
        EXPECT_FALSE(animator->isFinished());
        EXPECT_EQ(animator->getValue(), 0);
    }
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    EXPECT_EQ(sequencer->getCurrentFrame(), 15);
    EXPECT_EQ(sequencer->getCurrentCount(), 3);
}

TEST(AnimationSequencer, SeeksToItsVeryEnd) {
    const auto animator = counting(10);
    const auto sequencer = sequence({{animator, 0}});
    sequencer->seek(10);
    EXPECT_EQ(sequencer->getCurrentFrame(), 10);
    EXPECT_TRUE(animator->isFinished());
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    // The search begins right behind the list, which is allowed.
    Lines lines;
    sequencer->onFinished = [&lines](const auto&) { lines.emplace_back("finished"); };
    tick(*sequencer);
    EXPECT_EQ(lines, Lines{"finished"});
}

TEST(AnimationSequencer, SeekingBeyondItsEndStopsIt) {
    const auto animator = counting(10);
    const auto sequencer = sequence({{animator, 0}});
    tick(*sequencer, 2);
    sequencer->seek(11);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_FALSE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 2);
}

TEST(AnimationSequencer, AnIndexBeyondTheListEndsTheProgram) {
    const auto sequencer = sequence({{counting(1), 0}});
    Peer::currentIndex(*sequencer) = 2;
    EXPECT_DEATH(tick(*sequencer), "Fatal error: Range requires lowerBound <= upperBound");
}

TEST(AnimationSequencer, RemovalBelowTheIndexCanLeaveItBeyondTheListWhichEndsTheProgram) {
    const Members made{counting(9), counting(9), counting(9)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 0}, {made[2], 0}});
    tick(*sequencer);
    sequencer->remove(made[0]);
    // Right behind the list is still allowed.
    tick(*sequencer);
    EXPECT_EQ(sequencer->getCurrentIndex(), 2);
    sequencer->remove(made[1]);
    EXPECT_DEATH(tick(*sequencer), "Fatal error: Range requires lowerBound <= upperBound");
}

TEST(AnimationSequencer, AMissingEntryEndsTheSearchWithALine) {
    Lines lines;
    const auto sequencer = recorded({{counting(3), 0}, {counting(3), 0}}, lines);
    Peer::animators(*sequencer).insert(Peer::animators(*sequencer).begin() + 1, nullptr);
    const CapturedOutput output;
    tick(*sequencer);
    EXPECT_EQ(output.text(), "ERROR: Animationsobjekt is undefiniert!\n");
    EXPECT_EQ(lines, Lines{"1: before A"});
}

TEST(AnimationSequencer, AnEndBeyondSixtyFourBitsEndsTheProgram) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    EXPECT_DEATH(sequencer->add(counting(1), kLargest),
                 "Fatal error: Integer overflow in an addition");
}

TEST(AnimationSequencer, ALengthAtTheEdgeOfSixtyFourBitsStands) {
    const auto sequencer = sequence({{counting(1), kLargest - 1}});
    EXPECT_EQ(Peer::maxFrames(*sequencer), kLargest);
}

TEST(AnimationSequencer, ItsCallbackMayAddWhatIsThenDueOnTheNextTick) {
    Lines lines;
    const auto late = counting(5);
    const auto sequencer = recorded({{counting(5), 0}}, lines);
    bool isAdded = false;
    sequencer->onAnimation = [&](const auto& self, const auto&) {
        if (!std::exchange(isAdded, true)) {
            self->add(late, 0);
        }
    };
    tick(*sequencer);
    EXPECT_EQ(late->getValue(), 0);
    tick(*sequencer);
    EXPECT_EQ(late->getValue(), 1);
}

TEST(AnimationSequencer, ItsCallbackMayStopTheAnimatorOfAnotherTurn) {
    Lines lines;
    const Members made{counting(5), counting(5)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 0}}, lines);
    record(made[1], "B", lines);
    const auto write = sequencer->onAnimation;
    sequencer->onAnimation = [&](const auto& self, const auto& item) {
        write(self, item);
        made[1]->stop();
    };
    tick(*sequencer);
    EXPECT_EQ(lines, (Lines{"1: before A", "1: before B"}));
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(AnimationSequencer, ATickInsideATickStepsEverythingOnceMore) {
    const Members made{counting(9), counting(9)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 0}});
    bool isInside = false;
    sequencer->onAnimation = [&](const auto& self, const auto&) {
        if (!std::exchange(isInside, true)) {
            self->animate();
        }
    };
    tick(*sequencer);
    EXPECT_EQ(made[0]->getValue(), 2);
    EXPECT_EQ(made[1]->getValue(), 2);
}

class CountedSequencer : public AnimationSequencer {
  public:
    Lines lines;

    void stop() override {
        lines.emplace_back("stop");
        AnimationSequencer::stop();
    }

  protected:
    void findAnimators() override {
        lines.emplace_back("findAnimators");
        AnimationSequencer::findAnimators();
    }
    void scheduleItem(const std::shared_ptr<Animator>& item) override {
        lines.emplace_back("scheduleItem");
        AnimationSequencer::scheduleItem(item);
    }
    void calculateFrames() override {
        lines.emplace_back("calculateFrames");
        AnimationSequencer::calculateFrames();
    }
    void reset() override {
        lines.emplace_back("reset");
        AnimationSequencer::reset();
    }
};

TEST(AnimationSequencer, CallsItsOwnOperationsThroughTheOverridableOnes) {
    const auto sequencer = std::make_shared<CountedSequencer>();
    const auto animator = counting(1);
    sequencer->add(animator, 0);
    tick(*sequencer);
    sequencer->remove(animator);
    sequencer->seek(2);
    EXPECT_EQ(sequencer->lines, (Lines{"calculateFrames", "findAnimators", "scheduleItem", "stop",
                                       "reset", "calculateFrames", "stop", "reset"}));
}

}  // namespace
}  // namespace orvalo
