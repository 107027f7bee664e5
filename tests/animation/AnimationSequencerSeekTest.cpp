#include "animation/AnimationSequencer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "tests/animation/Counting.h"
#include "tests/animation/Sequence.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo {
namespace {

using testing::CapturedOutput;
using testing::counting;
using testing::Lines;
using testing::Members;
using testing::recorded;
using testing::sequence;
using testing::tickOn;
using Peer = AnimationSequencerPeer;

TEST(AnimationSequencer, PauseStopsStepsButNotTheFrameCounter) {
    Lines lines;
    const Members made{counting(9), counting(9), counting(9)};
    const auto sequencer = recorded({{made[0], 0}, {made[1], 3}, {made[2], 4}}, lines);
    tickOn(*sequencer);
    sequencer->pause();
    lines.clear();
    tickOn(*sequencer, 4);
    EXPECT_EQ(lines, Lines{});
    EXPECT_EQ(sequencer->getCurrentFrame(), 5);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    sequencer->continue_();
    tickOn(*sequencer);
    EXPECT_EQ(lines, (Lines{"6: before A", "6: before B", "6: before C"}));
}

TEST(AnimationSequencer, PrintsNoWarningDuringAPause) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    sequencer->pause();
    const CapturedOutput output;
    tickOn(*sequencer);
    EXPECT_EQ(output.text(), "");
}

TEST(AnimationSequencer, StopKeepsPauseScheduleAndLength) {
    const auto sequencer = sequence({{counting(5), 0}});
    tickOn(*sequencer, 2);
    sequencer->pause();
    sequencer->stop();
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 5);
    tickOn(*sequencer, 5);
    EXPECT_EQ(sequencer->getCurrentFrame(), 5);
}

TEST(AnimationSequencer, RewindsAnimatorsAndKeepsItsOwnState) {
    const Members made{counting(4), counting(4)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 2}});
    tickOn(*sequencer, 3);
    sequencer->rewind();
    for (const auto& animator : made) {
        EXPECT_EQ(animator->getValue(), 0);
        EXPECT_FALSE(animator->isFinished());
    }
    EXPECT_EQ(sequencer->getCurrentFrame(), 3);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    EXPECT_EQ(sequencer->getCurrentCount(), 2);
}

TEST(AnimationSequencer, SeekStopsEarlierAnimatorsAndRewindsTheOthers) {
    const Members made{counting(50), counting(50), counting(50)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 15}, {made[2], 30}});
    tickOn(*sequencer, 40);
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

/// Records under its name the operations that a sequencer calls.
class RecordingAnimator : public Animator {
  public:
    RecordingAnimator(std::string name, Lines& lines) : name_(std::move(name)), lines_(lines) {}

    void rewind() override { lines_.push_back("rewind " + name_); }
    void stop() override { lines_.push_back("stop " + name_); }

  private:
    std::string name_;
    Lines& lines_;
};

TEST(AnimationSequencer, RewindsAndSeeksInOrderOfStartFrames) {
    Lines lines;
    const auto sequencer = sequence({{std::make_shared<RecordingAnimator>("late", lines), 20},
                                     {std::make_shared<RecordingAnimator>("early", lines), 0},
                                     {std::make_shared<RecordingAnimator>("middle", lines), 10}});
    sequencer->rewind();
    EXPECT_EQ(lines, (Lines{"rewind early", "rewind middle", "rewind late"}));
    lines.clear();
    sequencer->seek(11);
    EXPECT_EQ(lines, (Lines{"stop early", "stop middle", "rewind late"}));
}

TEST(AnimationSequencer, UsesOverriddenOperationsOfItsAnimators) {
    const auto animator = std::make_shared<testing::TwoSteps>();
    const auto sequencer = sequence({{animator, 0}, {counting(9), 0}});
    tickOn(*sequencer);
    EXPECT_EQ(sequencer->getCurrentCount(), 2);
    tickOn(*sequencer, 2);
    EXPECT_EQ(animator->steps, 2);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(AnimationSequencer, SeeksToTheLastFrame) {
    const auto animator = counting(10);
    const auto sequencer = sequence({{animator, 0}});
    sequencer->seek(10);
    EXPECT_EQ(sequencer->getCurrentFrame(), 10);
    EXPECT_TRUE(animator->isFinished());
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    // An index right behind the list is allowed.
    Lines lines;
    sequencer->onFinished = [&lines](const auto&) { lines.emplace_back("finished"); };
    tickOn(*sequencer);
    EXPECT_EQ(lines, Lines{"finished"});
}

TEST(AnimationSequencer, SeekBeyondTheEndStops) {
    const auto animator = counting(10);
    const auto sequencer = sequence({{animator, 0}});
    tickOn(*sequencer, 2);
    sequencer->seek(11);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_FALSE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 2);
}

}  // namespace
}  // namespace orvalo
