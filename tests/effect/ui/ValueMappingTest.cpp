#include "effect/ui/model/ValueMapping.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "effect/ui/model/Control.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

TEST(ValueMapping, EndPositionsAreTheEndsOfTheRange) {
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        const auto& ends = range(parameter);
        EXPECT_EQ(valueAt(parameter, 0.0), ends.minimum) << ends.symbol;
        EXPECT_EQ(valueAt(parameter, 1.0), ends.maximum) << ends.symbol;
        EXPECT_EQ(valueAt(parameter, -3.0), ends.minimum) << ends.symbol;
        EXPECT_EQ(valueAt(parameter, 3.0), ends.maximum) << ends.symbol;
        EXPECT_EQ(positionOf(parameter, ends.minimum), 0.0) << ends.symbol;
        EXPECT_EQ(positionOf(parameter, ends.maximum), 1.0) << ends.symbol;
        EXPECT_EQ(positionOf(parameter, 1e9F), 1.0) << ends.symbol;
        const float odd = std::numeric_limits<float>::quiet_NaN();
        EXPECT_EQ(positionOf(parameter, odd), positionOf(parameter, ends.standard)) << ends.symbol;
    }
}

TEST(ValueMapping, PositionAndValueAreInverse) {
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        for (int percent = 0; percent <= 100; percent += 5) {
            const double position = 0.01 * percent;
            EXPECT_NEAR(positionOf(parameter, valueAt(parameter, position)), position, 1e-6)
                << range(parameter).symbol;
        }
    }
}

TEST(ValueMapping, TimesHaveALogarithmicTaper) {
    EXPECT_NEAR(valueAt(Parameter::release, 0.5), std::sqrt(5.0F * 2000.0F), 1e-3F);
    EXPECT_NEAR(valueAt(Parameter::threshold, 0.5), -30.0F, 1e-5F);
}

TEST(ValueMapping, TurnedValuesAreRounded) {
    EXPECT_EQ(rounded(Parameter::threshold, -12.345F), -12.3F);
    EXPECT_EQ(rounded(Parameter::mix, 49.6F), 50.0F);
    EXPECT_EQ(rounded(Parameter::attack, 12.345F), 12.3F);
    EXPECT_EQ(rounded(Parameter::attack, 0.12345F), 0.123F);
    EXPECT_EQ(rounded(Parameter::release, 1234.0F), 1230.0F);
    EXPECT_EQ(rounded(Parameter::ratio, 3.14159F), 3.14F);
    EXPECT_EQ(rounded(Parameter::triggerNote, 36.5F), 37.0F);
    EXPECT_EQ(rounded(Parameter::output, 99.0F), 12.0F);
}

TEST(ValueMapping, StepsAreCoarseOrFine) {
    EXPECT_EQ(stepped(Parameter::threshold, -18.0F, 1, false), -17.0F);
    EXPECT_EQ(stepped(Parameter::threshold, -18.0F, -3, true), -18.3F);
    EXPECT_EQ(stepped(Parameter::threshold, -0.5F, 1, false), 0.0F);
    EXPECT_EQ(stepped(Parameter::mix, 100.0F, -1, false), 95.0F);
    EXPECT_EQ(stepped(Parameter::mix, 100.0F, -1, true), 99.0F);
    EXPECT_EQ(stepped(Parameter::triggerNote, 36.0F, 1, false), 37.0F);
    EXPECT_EQ(stepped(Parameter::triggerNote, 36.0F, 1, true), 37.0F);
    EXPECT_EQ(stepped(Parameter::midiChannel, 16.0F, 1, false), 16.0F);
    EXPECT_EQ(stepped(Parameter::ratio, 4.0F, 1, false), 4.5F);
    EXPECT_EQ(stepped(Parameter::ratio, 4.0F, 1, true), 4.05F);
    EXPECT_EQ(stepped(Parameter::sideChainHighPass, 20.0F, 1, false), 25.0F);
    EXPECT_EQ(stepped(Parameter::sideChainHighPass, 1000.0F, 1, false), 1200.0F);
    EXPECT_EQ(stepped(Parameter::beatDivision, 7.0F, -1, false), 6.0F);
    EXPECT_EQ(stepped(Parameter::beatTempo, 97.5F, 1, false), 98.0F);
    EXPECT_EQ(stepped(Parameter::beatOffset, 0.0F, -1, false), -5.0F);
    EXPECT_EQ(stepped(Parameter::hold, 0.0F, 1, false), 5.0F);
    EXPECT_EQ(stepped(Parameter::oversampling, 2.0F, 1, false), 2.0F);
}

TEST(ValueMapping, StepsLandOnRoundValues) {
    EXPECT_EQ(stepped(Parameter::threshold, -17.4F, 1, false), -17.0F);
    EXPECT_EQ(stepped(Parameter::threshold, -17.4F, -1, false), -18.0F);
    EXPECT_EQ(stepped(Parameter::mix, 63.0F, 1, false), 65.0F);
    EXPECT_EQ(stepped(Parameter::attack, 11.6F, 1, false), 12.0F);
    EXPECT_EQ(stepped(Parameter::attack, 11.6F, -1, false), 10.0F);
    const auto series = [](Parameter parameter, float value, int direction, std::size_t count) {
        std::vector<float> values(count);
        for (auto& next : values) {
            next = value = stepped(parameter, value, direction, false);
        }
        return values;
    };
    EXPECT_EQ(series(Parameter::release, 800.0F, 1, 9),
              (std::vector<float>{900, 1000, 1200, 1400, 1600, 1800, 2000, 2000, 2000}));
    EXPECT_EQ(series(Parameter::attack, 3.0F, -1, 14),
              (std::vector<float>{2.5, 2, 1.8F, 1.6F, 1.4F, 1.2F, 1, 0.9F, 0.8F, 0.7F, 0.6F, 0.5F,
                                  0.45F, 0.4F}));
    EXPECT_EQ(series(Parameter::ratio, 1.0F, 1, 12),
              (std::vector<float>{1.2F, 1.4F, 1.6F, 1.8F, 2, 2.5, 3, 3.5, 4, 4.5, 5, 6}));
}

TEST(ValueMapping, EveryStepChangesTheValue) {
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        for (const bool fine : {false, true}) {
            float value = range(parameter).minimum;
            int steps = 0;
            for (; value < range(parameter).maximum; ++steps) {
                const float next = stepped(parameter, value, 1, fine);
                ASSERT_GT(next, value) << range(parameter).symbol;
                value = next;
            }
            EXPECT_LE(steps, 3000) << range(parameter).symbol;
        }
    }
}

TEST(KnobDrag, AddsUpMovesSmallerThanAStep) {
    KnobDrag drag(Parameter::triggerNote, 36.0F);
    for (int i = 0; i < 10; ++i) {
        drag.move(0.1 / 127.0, false);
    }
    EXPECT_EQ(drag.move(0.0, false), 37.0F);
}

TEST(KnobDrag, FineMovesAreTenTimesSmaller) {
    KnobDrag drag(Parameter::threshold, -30.0F);
    EXPECT_EQ(drag.move(0.1, false), -24.0F);
    EXPECT_EQ(drag.move(0.1, true), -23.4F);
    EXPECT_EQ(drag.move(-1.0, false), -60.0F);
    EXPECT_EQ(drag.move(0.5, false), -30.0F);
}

}  // namespace
