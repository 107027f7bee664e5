#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectState.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::ParameterRange;
using orvalo::effect::parameterRanges;

/// What version 0.1 had: its ports' symbols and ranges, and the values of the recorded state.
struct FirstPort {
    const char* symbol;
    float minimum;
    float maximum;
    float standard;
    float recorded;
};
constexpr std::array<FirstPort, 14> firstPorts{{{"enabled", 0.0F, 1.0F, 1.0F, 0.0F},
                                                {"threshold", -60.0F, 0.0F, -18.0F, -33.3F},
                                                {"ratio", 1.0F, 20.0F, 4.0F, 2.25F},
                                                {"knee", 0.0F, 24.0F, 6.0F, 24.0F},
                                                {"attack", 0.1F, 200.0F, 10.0F, 0.1F},
                                                {"release", 5.0F, 2000.0F, 120.0F, 1999.5F},
                                                {"makeup", 0.0F, 24.0F, 4.0F, 0.0F},
                                                {"mix", 0.0F, 100.0F, 100.0F, 12.5F},
                                                {"output", -24.0F, 12.0F, 0.0F, -24.0F},
                                                {"duck_depth", 0.0F, 60.0F, 12.0F, 60.0F},
                                                {"duck_release", 10.0F, 2000.0F, 200.0F, 10.0F},
                                                {"trigger_level", 1.0F, 30.0F, 6.0F, 30.0F},
                                                {"trigger_note", 0.0F, 127.0F, 36.0F, 127.0F},
                                                {"midi_channel", 0.0F, 16.0F, 0.0F, 16.0F}}};

EffectState::Values recordedValues() {
    EffectState::Values values;
    for (const auto& port : firstPorts) {
        values[port.symbol] = port.recorded;
    }
    return values;
}

const ParameterRange& rangeOf(const std::string& symbol) {
    const auto* const found = std::find_if(parameterRanges.begin(), parameterRanges.end(),
                                           [&](const auto& one) { return symbol == one.symbol; });
    EXPECT_NE(found, parameterRanges.end()) << symbol;
    return found == parameterRanges.end() ? parameterRanges.front() : *found;
}

TEST(State, OfTheFirstVersionIsLoadedWhole) {
    EXPECT_EQ(EffectState::load(EFFECT_TEST_DATA "/state-0.1.lv2/state.ttl"), recordedValues());
    for (const auto& [symbol, value] : recordedValues()) {
        EXPECT_EQ(rangeOf(symbol).clamp(value), value) << symbol;
    }
}

TEST(State, HasAllThatTheFirstVersionReads) {
    const TemporaryFolder folder;
    EffectState::Values values;
    for (const bool isMaximum : {false, true}) {
        for (const auto& range : parameterRanges) {
            values[range.symbol] = isMaximum ? range.maximum : range.minimum;
        }
        EffectState::save(values, "Now", folder.path() / "now.lv2", "now.ttl");
        const auto saved = EffectState::load(folder.path() / "now.lv2/now.ttl");
        EXPECT_EQ(saved, values);
        for (const auto& port : firstPorts) {
            EXPECT_EQ(saved.at(port.symbol), isMaximum ? port.maximum : port.minimum)
                << port.symbol;
        }
    }
}

TEST(State, ControlsOfTheFirstVersionKeepTheirDefaults) {
    for (const auto& port : firstPorts) {
        EXPECT_EQ(rangeOf(port.symbol).standard, port.standard) << port.symbol;
    }
}

}  // namespace
