#include "animation/Animator.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <vector>

#include "animation/EasingCurve.h"

namespace orvalo {
namespace {

using enum EnumEasing;
using Values = std::vector<float>;

/// An animator with its callbacks recorded.
struct Recorded {
    std::shared_ptr<Animator> animator = std::make_shared<Animator>();
    Values before;
    Values ends;
    int turns = 0;

    Recorded() {
        animator->onAnimation = [this](const auto& self, float value) {
            EXPECT_EQ(self, animator);
            before.push_back(value);
        };
        animator->onFinished = [this](const auto& self, float value) {
            EXPECT_EQ(self, animator);
            EXPECT_TRUE(self->isFinished());
            ends.push_back(value);
        };
        animator->onLoop = [this](const auto& self) {
            EXPECT_EQ(self, animator);
            ++turns;
        };
    }

    /// The values after each of `count` steps.
    Values step(int count) const {
        Values values;
        for (int done = 0; done < count; ++done) {
            animator->animate();
            values.push_back(animator->getValue());
        }
        return values;
    }
};

TEST(Animator, IsFinishedBeforeItIsSetUp) {
    Recorded recorded;
    EXPECT_TRUE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.step(3), (Values{0, 0, 0}));
    EXPECT_EQ(recorded.animator->getSourceValue(), 0);
    EXPECT_EQ(recorded.animator->getDestinationValue(), 0);
    EXPECT_FALSE(recorded.animator->looped);
    EXPECT_TRUE(recorded.before.empty());
    EXPECT_TRUE(recorded.ends.empty());
}

TEST(Animator, TakesOneStepMoreThanItsFrames) {
    Recorded recorded;
    recorded.animator->setup(0, 10, 4);
    EXPECT_FALSE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.step(4), (Values{2.5f, 5, 7.5f, 10}));
    EXPECT_FALSE(recorded.animator->isFinished());
    EXPECT_TRUE(recorded.ends.empty());
    EXPECT_EQ(recorded.step(3), (Values{10, 10, 10}));
    EXPECT_TRUE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.before, (Values{0, 2.5f, 5, 7.5f}));
    EXPECT_EQ(recorded.ends, Values{10});
    EXPECT_EQ(recorded.turns, 0);
}

TEST(Animator, SetsTheEndValueExactly) {
    Recorded recorded;
    recorded.animator->setup(0.1f, 0.7f, 3, 0.009f, EASING_easeOutInExpo);
    const auto values = recorded.step(4);
    EXPECT_NE(values[2], 0.7f);
    EXPECT_EQ(values[3], 0.7f);
}

TEST(Animator, EndsOnTheFirstStepWhenSourceAndDestinationAreEqual) {
    Recorded recorded;
    recorded.animator->setup(3, 3, 50);
    EXPECT_FALSE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.step(1), Values{3});
    EXPECT_TRUE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.ends, Values{3});
    EXPECT_TRUE(recorded.before.empty());
}

TEST(Animator, EndsOnTheFirstStepWithoutFramesAlsoAfterRewind) {
    for (const std::int64_t frames : {0, -5}) {
        Recorded recorded;
        recorded.animator->setup(1, 2, frames);
        EXPECT_FALSE(recorded.animator->isFinished());
        EXPECT_EQ(recorded.animator->getValue(), 1);
        EXPECT_EQ(recorded.step(1), Values{2});
        recorded.animator->rewind();
        EXPECT_FALSE(recorded.animator->isFinished());
        EXPECT_EQ(recorded.animator->getValue(), 1);
        EXPECT_EQ(recorded.step(1), Values{2});
        EXPECT_EQ(recorded.ends, (Values{2, 2}));
        EXPECT_TRUE(recorded.before.empty());
    }
}

TEST(Animator, ConstructorSetsUpTheRun) {
    const auto animator = std::make_shared<Animator>(1.0f, 3.0f, 4, 0.5f, EASING_easeInQuad);
    EXPECT_FALSE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 1);
    EXPECT_EQ(animator->getSourceValue(), 1);
    EXPECT_EQ(animator->getDestinationValue(), 3);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 1.125f);
}

TEST(Animator, SetupStartsANewRun) {
    Recorded recorded;
    recorded.animator->setup(0, 10, 4);
    recorded.animator->looped = true;
    recorded.step(3);
    recorded.animator->setup(5, 6, 2);
    EXPECT_EQ(recorded.animator->getValue(), 5);
    EXPECT_TRUE(recorded.animator->looped);
    EXPECT_EQ(recorded.step(3), (Values{5.5f, 6, 6}));
}

TEST(Animator, LoopedRunReversesForEver) {
    Recorded recorded;
    recorded.animator->setup(0, 1, 2);
    recorded.animator->looped = true;
    EXPECT_EQ(recorded.step(3), (Values{0.5f, 1, 1}));
    EXPECT_EQ(recorded.turns, 1);
    EXPECT_EQ(recorded.animator->getSourceValue(), 1);
    EXPECT_EQ(recorded.animator->getDestinationValue(), 0);
    EXPECT_EQ(recorded.step(3), (Values{0.5f, 0, 0}));
    EXPECT_EQ(recorded.turns, 2);
    EXPECT_EQ(recorded.step(2), (Values{0.5f, 1}));
    EXPECT_EQ(recorded.before, (Values{0, 0.5f, 1, 0.5f, 0, 0.5f}));
    EXPECT_TRUE(recorded.ends.empty());
    EXPECT_FALSE(recorded.animator->isFinished());
}

TEST(Animator, FinishesWhenLoopedIsCleared) {
    Recorded recorded;
    recorded.animator->setup(0, 1, 2);
    recorded.animator->looped = true;
    recorded.step(4);
    recorded.animator->looped = false;
    EXPECT_EQ(recorded.step(2), (Values{0, 0}));
    EXPECT_EQ(recorded.ends, Values{0});
    EXPECT_EQ(recorded.turns, 1);
}

TEST(Animator, LoopedRunWithoutFramesReversesAtEveryStep) {
    Recorded recorded;
    recorded.animator->setup(0, 1, 0);
    recorded.animator->looped = true;
    // reverse() sets the value to its new start.
    EXPECT_EQ(recorded.step(3), (Values{1, 0, 1}));
    EXPECT_EQ(recorded.turns, 3);
}

TEST(Animator, StopClearsLooped) {
    Recorded recorded;
    recorded.animator->setup(0, 1, 2);
    recorded.animator->looped = true;
    recorded.step(1);
    recorded.animator->stop();
    EXPECT_TRUE(recorded.animator->isFinished());
    EXPECT_FALSE(recorded.animator->looped);
    EXPECT_EQ(recorded.animator->getValue(), 0.5f);
    EXPECT_TRUE(recorded.ends.empty());
    recorded.animator->setup(0, 1, 2);
    recorded.step(3);
    EXPECT_EQ(recorded.ends, Values{1});
    EXPECT_EQ(recorded.turns, 0);
}

TEST(Animator, ReverseRunsBackOnTheSameCurve) {
    Recorded recorded;
    recorded.animator->setup(0, 1, 4, 0.25f, EASING_easeInQuad);
    recorded.step(2);
    recorded.animator->reverse();
    EXPECT_EQ(recorded.animator->getValue(), 1);
    EXPECT_EQ(recorded.step(5), (Values{0.9375f, 0.75f, 0.4375f, 0, 0}));
    EXPECT_EQ(recorded.ends, Values{0});
}

TEST(Animator, ReverseAfterTheEndReturnsInOneStep) {
    Recorded recorded;
    recorded.animator->setup(2, 7, 1);
    recorded.step(2);
    recorded.animator->reverse();
    EXPECT_EQ(recorded.animator->getValue(), 7);
    EXPECT_EQ(recorded.step(1), Values{2});
    EXPECT_EQ(recorded.ends, (Values{7, 2}));
}

TEST(Animator, RewindRepeatsTheRunLinearly) {
    Recorded recorded;
    recorded.animator->setup(0, 8, 4, 0.25f, EASING_easeInQuad);
    EXPECT_EQ(recorded.step(2), (Values{0.5f, 2}));
    recorded.animator->rewind();
    EXPECT_EQ(recorded.animator->getValue(), 0);
    EXPECT_EQ(recorded.step(5), (Values{2, 4, 6, 8, 8}));
    recorded.animator->rewind();
    EXPECT_EQ(recorded.step(1), Values{2});
}

TEST(Animator, UndoJumpsToTheEnd) {
    Recorded recorded;
    recorded.animator->setup(0, 8, 4, 0.25f, EASING_easeInQuad);
    recorded.step(2);
    recorded.before.clear();
    recorded.animator->undo();
    EXPECT_EQ(recorded.animator->getValue(), 8);
    EXPECT_TRUE(recorded.animator->isFinished());
    EXPECT_EQ(recorded.before, Values{0});
    EXPECT_EQ(recorded.ends, Values{8});
    recorded.animator->rewind();
    EXPECT_EQ(recorded.step(2), (Values{8, 8})) << "undo() leaves a run of one frame";
}

TEST(Animator, UndoReversesALoopedRun) {
    Recorded recorded;
    recorded.animator->setup(0, 8, 4);
    recorded.animator->looped = true;
    recorded.animator->undo();
    EXPECT_EQ(recorded.turns, 1);
    EXPECT_TRUE(recorded.ends.empty());
    EXPECT_EQ(recorded.animator->getSourceValue(), 8);
    EXPECT_FALSE(recorded.animator->isFinished());
}

TEST(Animator, SetTypeChangesTheCurveDuringARun) {
    Recorded recorded;
    recorded.animator->setup(0, 8, 4);
    EXPECT_EQ(recorded.step(1), Values{2});
    recorded.animator->setType(EASING_easeInQuad);
    EXPECT_EQ(recorded.step(2), (Values{2, 4.5f}));
    recorded.animator->setType(EASING_easeLast);
    EXPECT_EQ(recorded.step(1), Values{8});
}

TEST(Animator, ComputesEveryCurveUnderItsName) {
    for (std::int64_t number = 0; number < rawValue(EASING_easeLast); ++number) {
        const auto type = static_cast<EnumEasing>(number);
        const auto animator = std::make_shared<Animator>(3.0f, 10.0f, 9, 0.009f, type);
        for (std::int64_t frame = 1; frame <= 9; ++frame) {
            animator->animate();
            EXPECT_EQ(animator->getValue(),
                      easingCurves.at(static_cast<std::size_t>(number))(frame, 3, 7, 9))
                << easingName(type) << " at " << frame;
        }
    }
}

TEST(Animator, TreatsTheEndMarkerAsEaseNone) {
    const auto animator = std::make_shared<Animator>(0.0f, 8.0f, 4, 0.009f, EASING_easeLast);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 2);
}

TEST(AnimatorDeathTest, InvalidCurveEndsTheProgram) {
    const auto animator = std::make_shared<Animator>();
    EXPECT_EXIT(animator->setType(static_cast<EnumEasing>(42)), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: There is no easing curve 42.\n$");
    EXPECT_EXIT(animator->setup(0, 1, 2, 0.009f, static_cast<EnumEasing>(-1)),
                ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: There is no easing curve -1.\n$");
}

TEST(AnimatorDeathTest, FatalErrorOfTheCurveEndsTheProgram) {
    const auto animator = std::make_shared<Animator>(
        0.0f, 1.0f, std::numeric_limits<std::int64_t>::max(), 0.009f, EASING_easeInBounce);
    EXPECT_EXIT(animator->animate(), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: Float value cannot be converted to Int because the result would be "
                "greater than Int.max\n$");
}

}  // namespace
}  // namespace orvalo
