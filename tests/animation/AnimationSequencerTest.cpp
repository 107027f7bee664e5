#include "animation/AnimationSequencer.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "tests/animation/Counting.h"
#include "tests/animation/Sequence.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo {
namespace {

using testing::CapturedOutput;
using testing::counting;
using testing::Lines;
using testing::Members;
using testing::sequence;
using testing::tickOn;
using Peer = AnimationSequencerPeer;
constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();

TEST(AnimationSequencer, IsEmptyAtFrame0Initially) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    EXPECT_EQ(sequencer->getCount(), 0);
    EXPECT_EQ(sequencer->getCurrentCount(), 0);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    EXPECT_EQ(sequencer->getCurrentIndex(), 0);
    EXPECT_EQ(Peer::maxFrames(*sequencer), 0);
    EXPECT_EQ(sequencer->interval, 0.005F);
    EXPECT_FALSE(sequencer->onAnimation || sequencer->onFinished);
}

TEST(AnimationSequencer, OrdersAnimatorsByFrameThenByAddition) {
    const Members made{counting(1), counting(1), counting(1), counting(1)};
    const auto sequencer = sequence({{made[0], 10}, {made[1], 0}, {made[2], 10}, {made[3], -5}});
    EXPECT_EQ(Peer::animators(*sequencer), (Members{made[3], made[1], made[0], made[2]}));
    EXPECT_EQ(sequencer->getCount(), 4);
}

TEST(AnimationSequencer, AnimatorAddedTwiceHasTwoEntriesAtTheNewFrame) {
    const Members made{counting(1), counting(1)};
    const auto sequencer = sequence({{made[0], 0}, {made[1], 5}, {made[0], 10}});
    EXPECT_EQ(Peer::animators(*sequencer), (Members{made[1], made[0], made[0]}));
}

TEST(AnimationSequencer, PrintsALineAndAddsNothingForNull) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const CapturedOutput output;
    sequencer->add(nullptr, 3);
    EXPECT_EQ(output.text(), "FEHLER: Das Animator Objekt ist ungültig.\n");
    EXPECT_EQ(sequencer->getCount(), 0);
}

TEST(AnimationSequencer, LengthNeverShrinksUntilAllAreRemoved) {
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

TEST(AnimationSequencer, RemovingNullRecalculatesTheLength) {
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

TEST(AnimationSequencer, RemovingAnAnimatorWithoutAnEntryEndsTheProgram) {
    const auto sequencer = sequence({{counting(1), 0}});
    EXPECT_DEATH(sequencer->remove(counting(1)),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST(AnimationSequencer, EndFrameBeyond64BitsEndsTheProgram) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    EXPECT_DEATH(sequencer->add(counting(1), kLargest),
                 "Fatal error: Integer overflow in an addition");
}

TEST(AnimationSequencer, AcceptsTheLargest64BitLength) {
    const auto sequencer = sequence({{counting(1), kLargest - 1}});
    EXPECT_EQ(Peer::maxFrames(*sequencer), kLargest);
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

TEST(AnimationSequencer, CallsItsOverridableOperations) {
    const auto sequencer = std::make_shared<CountedSequencer>();
    const auto animator = counting(1);
    sequencer->add(animator, 0);
    tickOn(*sequencer);
    sequencer->remove(animator);
    sequencer->seek(2);
    EXPECT_EQ(sequencer->lines, (Lines{"calculateFrames", "findAnimators", "scheduleItem", "stop",
                                       "reset", "calculateFrames", "stop", "reset"}));
}

}  // namespace
}  // namespace orvalo
