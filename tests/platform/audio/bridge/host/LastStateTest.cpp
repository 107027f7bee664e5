#include "platform/audio/bridge/host/LastState.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <map>

namespace {

using namespace orvalo;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

std::map<std::uint32_t, float> controls(const LastState& state) {
    std::map<std::uint32_t, float> result;
    for (const auto& control : state.controls) {
        result[control.port] = control.value;
    }
    return result;
}

TEST(ControlRange, HoldsItsBoundsAndWhatIsBetween) {
    const ControlRange range{0, -1.0F, 2.0F, false};
    for (const float value : {-1.0F, 0.0F, 2.0F}) {
        EXPECT_TRUE(range.holds(value, 48000.0)) << value;
    }
    for (const float value : {-1.01F, 2.01F, kInfinity, -kInfinity, kNoNumber}) {
        EXPECT_FALSE(range.holds(value, 48000.0)) << value;
    }
}

TEST(ControlRange, HoldsAnyNumberWithoutBounds) {
    const ControlRange range{0, -kInfinity, kInfinity, false};
    EXPECT_TRUE(range.holds(-1e30F, 48000.0));
    EXPECT_FALSE(range.holds(kInfinity, 48000.0));
    EXPECT_FALSE(range.holds(kNoNumber, 48000.0));
}

TEST(ControlRange, ScalesWithTheRateWhereThePortDoes) {
    const ControlRange range{0, 0.0F, 0.5F, true};
    EXPECT_TRUE(range.holds(24000.0F, 48000.0));
    EXPECT_FALSE(range.holds(24001.0F, 48000.0));
    EXPECT_FALSE(range.holds(24000.0F, 44100.0));
}

TEST(LastState, TakesTheValuesThatArePossible) {
    const std::array<std::atomic<float>, 4> values{0.5F, kNoNumber, 1e30F, 1.0F};
    const std::vector<ControlRange> ranges{
        {0, 0.0F, 1.0F, false}, {1, 0.0F, 1.0F, false}, {2, 0.0F, 1.0F, false}};
    LastState state;
    state.sampleRate = 48000.0;
    state.takeControls(values, ranges);
    EXPECT_EQ(controls(state), (std::map<std::uint32_t, float>{{0, 0.5F}}));
}

TEST(LastState, KeepsWhatWasKnownWhereAValueIsImpossible) {
    const std::vector<ControlRange> ranges{{0, 0.0F, 1.0F, false}, {1, 0.0F, 1.0F, false}};
    LastState state;
    state.takeControls(std::array<std::atomic<float>, 2>{0.25F, 0.5F}, ranges);
    state.takeControls(std::array<std::atomic<float>, 2>{0.75F, -0.5F}, ranges);
    EXPECT_EQ(controls(state), (std::map<std::uint32_t, float>{{0, 0.75F}, {1, 0.5F}}));
}

TEST(LastState, APortThatTheMemoryDoesNotHaveHasNoValue) {
    LastState state;
    state.takeControls(std::array<std::atomic<float>, 1>{0.5F}, {{7, 0.0F, 1.0F, false}});
    EXPECT_TRUE(state.controls.empty());
}

}  // namespace
