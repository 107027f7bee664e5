#include "effect/ui/model/BeatShape.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

TEST(BeatShape, DucksFromEachGridPointOnAndRecovers) {
    ParameterValues values;
    values.set(Parameter::beatDivision, 7.0F);
    values.set(Parameter::beatLength, 25.0F);
    values.set(Parameter::beatOffset, 10.0F);
    values.set(Parameter::beatTempo, 120.0F);
    values.set(Parameter::duckDepth, 12.0F);
    values.set(Parameter::duckRelease, 250.0F);
    const BeatShape shape(values);
    EXPECT_EQ(shape.span(), 4.0);
    for (const double beat : {0.0, 1.0, 3.0}) {
        EXPECT_EQ(shape.duckingAt(beat + 0.11), 12.0);
        EXPECT_EQ(shape.duckingAt(beat + 0.34), 12.0);
        // 250 ms are half a quarter note.
        EXPECT_NEAR(shape.duckingAt(beat + 0.85), 12.0 * std::exp(-1.0), 1e-6);
        EXPECT_LT(shape.duckingAt(beat + 1.09), 3.0);
    }
}

TEST(BeatShape, ShowsTwoStepsAtLeast) {
    ParameterValues values;
    values.set(Parameter::beatDivision, 0.0F);
    EXPECT_EQ(BeatShape(values).span(), 12.0);
}

}  // namespace
