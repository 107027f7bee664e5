#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectHost.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::parameterRanges;

Stereo renderPreset(const std::map<std::string, float>& values, const Stereo& input,
                    const std::vector<MidiMessage>& notes) {
    EffectHost host;
    for (const auto& [symbol, value] : values) {
        host.control(symbol) = value;
    }
    host.activate();
    return host.render(input, {1024}, notes);
}

TEST(Presets, AreOrderedByLabel) {
    std::vector<std::string> labels;
    for (const auto& [label, values] : EffectWorld::shared().presets()) {
        labels.push_back(label);
    }
    EXPECT_EQ(labels,
              (std::vector<std::string>{"Acoustic Sparkle", "Bass Anchor",     "De-esser",
                                        "Drum Punch",       "Gentle Glue",     "Kick to Note",
                                        "Kick-proof Bus",   "Lazy Leveller",   "Mid-side Polish",
                                        "Mix Bus Glue",     "Night Listening", "Note Gate",
                                        "Note Pump",        "Parallel Drums",  "Parallel Smash",
                                        "Peak Catcher",     "Squashed Radio",  "Tempo Pump",
                                        "True-peak Master", "Vocal Leveller",  "Voice Forward"}));
}

TEST(Presets, SetEveryControlButBypassWithinItsRange) {
    for (const auto& [label, values] : EffectWorld::shared().presets()) {
        EXPECT_EQ(values.size(), parameterRanges.size() - 1) << label;
        for (const auto& range : parameterRanges) {
            if (std::string(range.symbol) == "enabled") {
                EXPECT_FALSE(values.contains(range.symbol)) << label;
                continue;
            }
            ASSERT_TRUE(values.contains(range.symbol)) << label << ' ' << range.symbol;
            EXPECT_EQ(range.clamp(values.at(range.symbol)), values.at(range.symbol))
                << label << ' ' << range.symbol;
        }
    }
}

TEST(Presets, SoundDifferent) {
    const auto input = noiseBursts(96000);
    const std::vector<MidiMessage> notes{{20000, {0x90, 60, 100}}, {40000, {0x80, 60, 0}}};
    std::vector<std::pair<std::string, Stereo>> rendered;
    for (const auto& [label, values] : EffectWorld::shared().presets()) {
        auto output = renderPreset(values, input, notes);
        for (const auto& [other, sound] : rendered) {
            double difference = 0.0;
            double power = 0.0;
            for (std::size_t i = 0; i < input.left.size(); ++i) {
                difference += std::pow(static_cast<double>(output.left[i] - sound.left[i]), 2.0);
                power += std::pow(static_cast<double>(sound.left[i]), 2.0);
            }
            // A difference of at least -20 dB relative to the signal, like a gain change of 1 dB.
            EXPECT_GT(difference, 0.01 * power) << label << " and " << other;
        }
        rendered.emplace_back(label, std::move(output));
    }
}

TEST(Presets, KeepTheLevelWithinLimits) {
    // Steady noise as loud as mastered music.
    auto input = noiseBursts(96000);
    for (std::size_t i = 0; i < input.left.size(); ++i) {
        input.left[i] = input.right[i] = 0.5F * std::sin(0.03F * static_cast<float>(i));
    }
    for (const auto& [label, values] : EffectWorld::shared().presets()) {
        const auto output = renderPreset(values, input, {});
        const float peak = *std::max_element(output.left.begin() + 48000, output.left.end());
        EXPECT_GT(peak, 0.5F * 0.4F) << label;
        EXPECT_LT(peak, 0.5F * 2.0F) << label;
    }
}

}  // namespace
