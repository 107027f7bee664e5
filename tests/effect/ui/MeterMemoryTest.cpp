#include "effect/ui/model/MeterMemory.h"

#include <gtest/gtest.h>

namespace {

using namespace orvalo::effect::ui;

TEST(RunWatch, SeesTheEffectRunWhileTheCountChanges) {
    RunWatch watch;
    EXPECT_FALSE(watch.isRunning(0.0));
    // The first count may be an old one.
    watch.update(7.0F, 1.0);
    EXPECT_FALSE(watch.isRunning(1.0));
    watch.update(7.0F, 1.1);
    EXPECT_FALSE(watch.isRunning(1.1));
    watch.update(8.0F, 1.2);
    EXPECT_TRUE(watch.isRunning(1.2));
    EXPECT_TRUE(watch.isRunning(1.69));
    watch.update(8.0F, 1.6);
    EXPECT_FALSE(watch.isRunning(1.71));
    watch.update(0.0F, 2.0);
    EXPECT_TRUE(watch.isRunning(2.0));
}

TEST(MeterMemory, LevelsFallWithoutTheEffect) {
    const Levels loud{.input = -6.0F, .output = -80.0F, .reduction = 12.0F, .ducking = 30.0F};
    EXPECT_EQ(
        fallen(loud, 0.5),
        (Levels{.input = -18.0F, .output = Levels::lowest, .reduction = 0.0F, .ducking = 18.0F}));
    EXPECT_EQ(fallen(loud, 10.0), Levels());
}

TEST(MeterMemory, HoldsPeaksForTwoSeconds) {
    MeterMemory memory;
    EXPECT_TRUE(memory.update({.input = -6.0F, .output = -9.0F}, -5.0F, 1.0));
    EXPECT_FALSE(memory.update({.input = -20.0F, .output = -20.0F}, -30.0F, 2.9));
    EXPECT_EQ(memory.inputPeak(), -6.0F);
    EXPECT_EQ(memory.outputPeak(), -9.0F);
    EXPECT_TRUE(memory.update({.input = -20.0F, .output = -3.0F}, -30.0F, 3.1));
    EXPECT_EQ(memory.inputPeak(), -20.0F);
    EXPECT_EQ(memory.outputPeak(), -3.0F);
}

TEST(MeterMemory, KeepsClippingAndTheTruePeakUntilTheReset) {
    MeterMemory memory;
    memory.update({.input = 0.0F, .output = -0.1F}, 0.0F, 1.0);
    EXPECT_FALSE(memory.hasInputClipped());
    EXPECT_FALSE(memory.hasOutputClipped());
    memory.update({.input = 0.1F, .output = -0.1F}, 0.3F, 1.1);
    memory.update({}, -90.0F, 100.0);
    EXPECT_TRUE(memory.hasInputClipped());
    EXPECT_TRUE(memory.hasOutputClipped());
    EXPECT_EQ(memory.truePeak(), 0.3F);
    memory.reset();
    EXPECT_FALSE(memory.hasInputClipped());
    EXPECT_FALSE(memory.hasOutputClipped());
    EXPECT_EQ(memory.truePeak(), Levels::lowest);
}

}  // namespace
