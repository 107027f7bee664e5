// What callbacks may do with their animator.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "animation/Animator.h"

namespace orvalo {
namespace {

using Values = std::vector<float>;

std::shared_ptr<Animator> animatorOf(std::int64_t frames) {
    return std::make_shared<Animator>(0.0f, static_cast<float>(frames), frames);
}

TEST(AnimatorCallback, OnFinishedMayStartTheNextRun) {
    const auto animator = animatorOf(1);
    Values ends;
    animator->onFinished = [&ends](const auto& self, float value) {
        ends.push_back(value);
        if (ends.size() == 1) {
            self->setup(5, 6, 1);
        }
    };
    animator->animate();
    animator->animate();
    EXPECT_FALSE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 5);
    animator->animate();
    animator->animate();
    EXPECT_EQ(ends, (Values{1, 6}));
}

TEST(AnimatorCallback, OnAnimationMayStopTheRun) {
    const auto animator = animatorOf(4);
    int finished = 0;
    animator->onFinished = [&finished](const auto&, float) { ++finished; };
    animator->onAnimation = [](const auto& self, float value) {
        if (value == 2) {
            self->stop();
        }
    };
    for (int step = 0; step < 10; ++step) {
        animator->animate();
    }
    EXPECT_TRUE(animator->isFinished());
    EXPECT_EQ(finished, 0);
}

TEST(AnimatorCallback, OnAnimationMaySetUpAnotherRun) {
    const auto animator = animatorOf(4);
    animator->onAnimation = [](const auto& self, float) {
        self->onAnimation = nullptr;
        self->setup(100, 200, 2);
    };
    animator->animate();
    EXPECT_EQ(animator->getValue(), 150);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 200);
}

TEST(AnimatorCallback, MayReplaceItselfWhileItRuns) {
    const auto animator = animatorOf(4);
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    Values seen;
    animator->onAnimation = [&seen, held = std::move(held)](const auto& self, float) {
        self->onAnimation = [&seen](const auto&, float value) { seen.push_back(value); };
        seen.push_back(static_cast<float>(*held));
    };
    animator->animate();
    EXPECT_TRUE(watched.expired());
    animator->animate();
    EXPECT_EQ(seen, (Values{7, 1}));
}

TEST(AnimatorCallback, OnAnimationMayCallAnimate) {
    const auto animator = animatorOf(4);
    animator->onAnimation = [](const auto& self, float value) {
        if (value == 0) {
            self->onAnimation = nullptr;
            self->animate();
        }
    };
    animator->animate();
    EXPECT_EQ(animator->getValue(), 2);
}

TEST(AnimatorCallback, OnLoopMayStopTheRunWhichStillReverses) {
    const auto animator = animatorOf(2);
    animator->looped = true;
    int finished = 0;
    animator->onFinished = [&finished](const auto&, float) { ++finished; };
    animator->onLoop = [](const auto& self) { self->stop(); };
    for (int step = 0; step < 3; ++step) {
        animator->animate();
    }
    // reverse() on a finished animator prepares a run of 0 frames.
    EXPECT_FALSE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 2);
    animator->animate();
    EXPECT_TRUE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 0);
    EXPECT_EQ(finished, 1);
}

TEST(AnimatorCallback, KeepsItsOwnState) {
    const auto animator = animatorOf(1);
    animator->looped = true;
    std::vector<int> seen;
    animator->onAnimation = [&seen, count = 0](const auto&, float) mutable {
        seen.push_back(++count);
    };
    animator->onLoop = [&seen, count = 10](const auto&) mutable { seen.push_back(++count); };
    for (int step = 0; step < 4; ++step) {
        animator->animate();
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 11, 2, 12}));
}

TEST(AnimatorCallback, KeepsItsOwnStateWhileItCallsAndReplacesItself) {
    auto animator = animatorOf(9);
    std::vector<int> seen;
    animator->onAnimation = [&seen, &animator, count = 0](const auto& self, float) mutable {
        if (++count < 3) {
            self->animate();
        } else {
            self->onAnimation = nullptr;
            animator.reset();
        }
        seen.push_back(++count);
    };
    auto* const bare = animator.get();
    bare->animate();
    EXPECT_EQ(seen, (std::vector<int>{4, 5, 6}));
    EXPECT_EQ(animator, nullptr);
}

TEST(AnimatorCallback, CopiesOfARunningCallbackShareItsState) {
    const auto animator = animatorOf(9);
    const auto other = animatorOf(9);
    std::vector<int> seen;
    animator->onAnimation = [&seen, count = 0](const auto&, float) mutable {
        seen.push_back(++count);
    };
    animator->animate();
    other->onAnimation = animator->onAnimation;
    other->animate();
    animator->animate();
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 3}));
}

/// Steps an animator whose last reference a callback releases. Returns whether it is destroyed
/// then.
template <typename Install>
bool isDestroyedAfterRelease(int steps, Install install) {
    auto animator = animatorOf(2);
    const std::weak_ptr<Animator> watched = animator;
    Animator* const bare = animator.get();
    install(*animator, [&animator] { animator.reset(); });
    for (int step = 0; step < steps; ++step) {
        EXPECT_FALSE(watched.expired());
        bare->animate();
    }
    return watched.expired();
}

TEST(AnimatorCallback, MayReleaseTheAnimator) {
    EXPECT_TRUE(isDestroyedAfterRelease(1, [](Animator& animator, auto release) {
        animator.onAnimation = [release](const auto&, float) { release(); };
    }));
    EXPECT_TRUE(isDestroyedAfterRelease(3, [](Animator& animator, auto release) {
        animator.onFinished = [release](const auto&, float) { release(); };
    }));
    EXPECT_TRUE(isDestroyedAfterRelease(3, [](Animator& animator, auto release) {
        animator.looped = true;
        animator.onLoop = [release](const auto&) { release(); };
    }));
}

TEST(AnimatorCallback, MayReleaseTheAnimatorDuringUndo) {
    auto animator = animatorOf(2);
    const std::weak_ptr<Animator> watched = animator;
    Animator* const bare = animator.get();
    bare->onAnimation = [&animator](const auto& self, float) {
        animator.reset();
        self->onAnimation = nullptr;
    };
    bare->undo();
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace orvalo
