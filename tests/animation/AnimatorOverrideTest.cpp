// Which operations of Animator call overrides.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "animation/Animator.h"
#include "tests/testing/Lines.h"

namespace orvalo {
namespace {

using enum EnumEasing;
using orvalo::testing::Lines;

struct Arguments {
    float source;
    float destination;
    std::int64_t frames;
    float interval;
    EnumEasing type;

    bool operator==(const Arguments&) const = default;
};

/// Records which operations are called.
class Recording : public Animator {
  public:
    using Animator::Animator;

    Lines calls;
    std::vector<Arguments> runs;

    void setup(float source, float destination, std::int64_t frames, float interval,
               EnumEasing type) override {
        calls.emplace_back("setup");
        runs.push_back({source, destination, frames, interval, type});
        Animator::setup(source, destination, frames, interval, type);
    }
    void reverse() override {
        calls.emplace_back("reverse");
        Animator::reverse();
    }
    void animate() override {
        calls.emplace_back("animate");
        Animator::animate();
    }
    void stop() override {
        calls.emplace_back("stop");
        Animator::stop();
    }
};

std::shared_ptr<Recording> recordingOf(float destination, std::int64_t frames,
                                       EnumEasing type = EASING_easeNone) {
    auto result = std::make_shared<Recording>();
    result->setup(0, destination, frames, 0.25f, type);
    result->calls.clear();
    result->runs.clear();
    return result;
}

TEST(AnimatorOverride, StopIsCalledAtTheEnd) {
    const auto animator = recordingOf(1, 0);
    animator->animate();
    EXPECT_EQ(animator->calls, (Lines{"animate", "stop"}));
}

TEST(AnimatorOverride, ReverseAndSetupAreCalledAtALoopEnd) {
    const auto animator = recordingOf(1, 0, EASING_easeInBack);
    animator->looped = true;
    animator->animate();
    EXPECT_EQ(animator->calls, (Lines{"animate", "reverse", "setup"}));
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{1, 0, 0, 0.25f, EASING_easeInBack}}));
}

TEST(AnimatorOverride, SetupIsCalledByRewindWithItsDefaults) {
    const auto animator = recordingOf(2, -5, EASING_easeInBack);
    animator->rewind();
    EXPECT_EQ(animator->calls, Lines{"setup"});
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{0, 2, -5, 0.009f, EASING_easeNone}}));
}

TEST(AnimatorOverride, SetupAndAnimateAreCalledByUndo) {
    const auto animator = recordingOf(2, 7, EASING_easeInBack);
    animator->undo();
    EXPECT_EQ(animator->calls, (Lines{"setup", "animate", "animate", "stop"}));
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{0, 2, 1, 0.009f, EASING_easeNone}}));
}

TEST(AnimatorOverride, SetupReceivesTheCurrentIntervalAndCurve) {
    const auto animator = recordingOf(2, 7);
    animator->setInterval(0.5f);
    animator->setType(EASING_easeOutCirc);
    animator->reverse();
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{2, 0, 7, 0.5f, EASING_easeOutCirc}}));
}

TEST(AnimatorOverride, SetupReceivesTheInitialIntervalOfANewAnimator) {
    const auto animator = std::make_shared<Recording>();
    animator->reverse();
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{0, 0, -1, 0.005f, EASING_easeNone}}));
}

TEST(AnimatorOverride, SetupReceivesItsDefaults) {
    const auto animator = std::make_shared<Recording>();
    Animator& plain = *animator;
    plain.setup(0, 2, 7);
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{0, 2, 7, 0.009f, EASING_easeNone}}));
}

TEST(AnimatorOverride, SetupReceivesTheDefaultsOfTheConstructor) {
    const auto animator = std::make_shared<Recording>(0.0f, 2.0f, 7);
    animator->reverse();
    EXPECT_EQ(animator->runs, (std::vector<Arguments>{{2, 0, 7, 0.009f, EASING_easeNone}}));
}

/// Would keep its run if stop() called reset().
class WithoutReset : public Animator {
    void reset() override {}
};

TEST(AnimatorOverride, ResetIsNotCalledByStop) {
    const auto animator = std::make_shared<WithoutReset>();
    animator->setup(0, 1, 2);
    animator->stop();
    EXPECT_TRUE(animator->isFinished());
}

/// Each overridable curve gives its raw value.
class OwnCurves : public Animator {
  public:
    using Animator::Animator;

    float easeInElastic(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                        std::int64_t /*numFrames*/) override {
        return 29;
    }
    float easeOutElastic(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                         std::int64_t /*numFrames*/) override {
        return 30;
    }
    float easeInOutElastic(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                           std::int64_t /*numFrames*/) override {
        return 31;
    }
    float easeInBack(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                     std::int64_t /*numFrames*/) override {
        return 33;
    }
    float easeOutBack(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                      std::int64_t /*numFrames*/) override {
        return 34;
    }
    float easeInOutBack(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                        std::int64_t /*numFrames*/) override {
        return 35;
    }
};

/// The first and the last frame of a run of two.
std::vector<float> framesOf(EnumEasing type) {
    const auto animator = std::make_shared<OwnCurves>(0.0f, 1.0f, 4, 0.009f, type);
    std::vector<float> values;
    for (int frame = 0; frame < 2; ++frame) {
        animator->animate();
        values.push_back(animator->getValue());
    }
    return values;
}

TEST(AnimatorOverride, CurveIsUsedByARun) {
    for (const auto type : {EASING_easeInElastic, EASING_easeOutElastic, EASING_easeInOutElastic,
                            EASING_easeInBack, EASING_easeOutBack, EASING_easeInOutBack}) {
        const auto number = static_cast<float>(rawValue(type));
        EXPECT_EQ(framesOf(type), (std::vector{number, number}));
    }
}

TEST(AnimatorOverride, InAndOutAreUsedByOutIn) {
    EXPECT_EQ(framesOf(EASING_easeOutInElastic), (std::vector{30.0f, 29.0f}));
    EXPECT_EQ(framesOf(EASING_easeOutInBack), (std::vector{34.0f, 33.0f}));
}

/// Overrides the Out-In curves.
class OwnOutIn : public Animator {
  public:
    using Animator::Animator;

    float easeOutInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                           std::int64_t numFrames) override {
        return static_cast<float>(currentFrame) + sourceValue + amount +
               static_cast<float>(numFrames);
    }
    float easeOutInBack(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                        std::int64_t /*numFrames*/) override {
        return 36;
    }
};

TEST(AnimatorOverride, OutInIsUsedByARun) {
    const auto animator =
        std::make_shared<OwnOutIn>(20.0f, 320.0f, 4000, 0.009f, EASING_easeOutInElastic);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 4321);
    animator->setType(EASING_easeOutInBack);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 36);
}

/// Changes the bound curve during its computation.
class CurveChanger : public Animator {
  public:
    float easeInBack(std::int64_t /*currentFrame*/, float /*sourceValue*/, float /*amount*/,
                     std::int64_t /*numFrames*/) override {
        setType(EASING_easeNone);
        return 33;
    }
};

TEST(AnimatorOverride, CurveMayBindAnother) {
    const auto animator = std::make_shared<CurveChanger>();
    animator->setup(0, 4, 4, 0.009f, EASING_easeInBack);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 33);
    animator->animate();
    EXPECT_EQ(animator->getValue(), 2);
}

}  // namespace
}  // namespace orvalo
