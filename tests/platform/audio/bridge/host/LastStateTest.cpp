#include "platform/audio/bridge/host/LastState.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <map>

namespace {

using namespace orvalo;
using Controls = std::map<std::uint32_t, float>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

LV2Port control(std::uint32_t index, float minimum = 0.0F, float maximum = 1.0F) {
    LV2Port port;
    port.index = index;
    port.kind = LV2PortKind::control;
    port.isInput = true;
    port.minimum = minimum;
    port.maximum = maximum;
    return port;
}

Controls controlsOf(const LastState& state) {
    Controls result;
    for (const auto& control : state.controls) {
        result[control.port] = control.value;
    }
    return result;
}

/// Whether a service's value for that port is taken.
bool isTaken(float value, const LV2Port& port, double sampleRate = 48000.0) {
    LastState state;
    state.sampleRate = sampleRate;
    state.takeControls(std::array<std::atomic<float>, 1>{value}, {port});
    return !state.controls.empty();
}

TEST(LastState, TakesValuesWithinTheRangeAndItsBounds) {
    const auto port = control(0, -1.0F, 2.0F);
    for (const float value : {-1.0F, 0.0F, 2.0F}) {
        EXPECT_TRUE(isTaken(value, port)) << value;
    }
    for (const float value : {-1.01F, 2.01F, kInfinity, -kInfinity, kNotANumber}) {
        EXPECT_FALSE(isTaken(value, port)) << value;
    }
}

TEST(LastState, TakesAnyNumberWithoutBounds) {
    const auto port = control(0, -kInfinity, kInfinity);
    EXPECT_TRUE(isTaken(-1e30F, port));
    EXPECT_FALSE(isTaken(kInfinity, port));
    EXPECT_FALSE(isTaken(kNotANumber, port));
}

TEST(LastState, ScalesTheRangeWithTheRateWhereThePortDoes) {
    auto port = control(0, 0.0F, 0.5F);
    port.scalesWithRate = true;
    EXPECT_TRUE(isTaken(24000.0F, port, 48000.0));
    EXPECT_FALSE(isTaken(24001.0F, port, 48000.0));
    EXPECT_FALSE(isTaken(24000.0F, port, 44100.0));
}

TEST(LastState, KeepsTheKnownValueWhereTheNewOneIsImpossible) {
    const std::vector<LV2Port> ports{control(0), control(1)};
    LastState state;
    state.takeControls(std::array<std::atomic<float>, 2>{0.25F, 0.5F}, ports);
    state.takeControls(std::array<std::atomic<float>, 2>{0.75F, -0.5F}, ports);
    EXPECT_EQ(controlsOf(state), (Controls{{0, 0.75F}, {1, 0.5F}}));
}

TEST(LastState, IgnoresAllPortsButControlInputs) {
    auto output = control(0);
    output.isInput = false;
    auto audio = control(0);
    audio.kind = LV2PortKind::audio;
    EXPECT_FALSE(isTaken(0.5F, output));
    EXPECT_FALSE(isTaken(0.5F, audio));
}

TEST(LastState, IgnoresAPortThatTheMemoryLacks) {
    EXPECT_FALSE(isTaken(0.5F, control(7)));
}

}  // namespace
