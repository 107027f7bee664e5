#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::parameterRanges;

/// Changes two random controls every 8192 frames, and renders in blocks that divide this.
Stereo render(std::uint32_t seed, const std::vector<std::uint32_t>& lengths) {
    constexpr std::size_t period = 8192;
    std::mt19937 random(seed);
    EffectHost host;
    host.activate();
    Stereo result;
    for (std::uint32_t turn = 0; turn < 12; ++turn) {
        for (int change = 0; change < 2; ++change) {
            const auto& range = parameterRanges.at(random() % parameterRanges.size());
            const float share = static_cast<float>(random() % 5) / 4.0F;
            host.control(range.symbol) = range.minimum + share * (range.maximum - range.minimum);
        }
        const auto output = host.render(noiseBursts(period, turn + 1), lengths,
                                        {{100, {0x90, 60, 90}}, {2000, {0x80, 60, 0}}});
        result.left.insert(result.left.end(), output.left.begin(), output.left.end());
        result.right.insert(result.right.end(), output.right.begin(), output.right.end());
    }
    return result;
}

/// Moves one control to three values, each for 8192 frames.
Stereo renderMoving(const orvalo::effect::ParameterRange& range, const Stereo& input,
                    std::uint32_t length) {
    EffectHost host;
    host.activate();
    Stereo result;
    for (const float share : {0.0F, 1.0F, 0.3F}) {
        host.control(range.symbol) = range.minimum + share * (range.maximum - range.minimum);
        const auto output = host.render(input, {length});
        result.left.insert(result.left.end(), output.left.begin(), output.left.end());
        result.right.insert(result.right.end(), output.right.begin(), output.right.end());
    }
    return result;
}

/// Whether to take all block lengths. By hand: this takes a quarter of an hour.
bool takesAllLengths() {
    return std::getenv("ORVALO_EFFECT_ALL_BLOCK_LENGTHS") != nullptr;
}

TEST(Automation, BlockLengthsChangeNoSample) {
    const bool all = takesAllLengths();
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        const auto expected = render(seed, {8192});
        for (std::uint32_t length = 1; length < 8192; length += all ? 1 : 1 + length * 3 / 2) {
            ASSERT_EQ(render(seed, {length}), expected) << seed << ' ' << length;
        }
    }
}

TEST(Automation, EachControlMovedAloneDependsOnNoBlockLength) {
    const bool all = takesAllLengths();
    const auto input = noiseBursts(8192, 3);
    for (const auto& range : parameterRanges) {
        const auto expected = renderMoving(range, input, 8192);
        for (std::uint32_t length = all ? 1 : 37; length < (all ? 8192U : 38U); ++length) {
            ASSERT_EQ(renderMoving(range, input, length), expected)
                << range.symbol << ' ' << length;
        }
    }
}

}  // namespace
