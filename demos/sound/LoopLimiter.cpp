#include "demos/sound/LoopLimiter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <numbers>
#include <vector>

namespace orvalo {

namespace {

/// Frames over which the gain falls and rises again: 4 ms at 48 kHz.
constexpr std::size_t reach = 192;

/// Half the number of frames that an interpolation uses.
constexpr std::size_t half = 6;
constexpr std::size_t taps = 2 * half;
constexpr std::size_t phases = 4;

/// A windowed sinc for interpolation at quarters of a frame.
std::array<std::array<float, taps>, phases> interpolators() {
    std::array<std::array<float, taps>, phases> table{};
    for (std::size_t phase = 0; phase < phases; ++phase) {
        for (std::size_t tap = 0; tap < taps; ++tap) {
            const double x =
                static_cast<double>(tap) - (half - 1) - static_cast<double>(phase) / phases;
            const double sinc =
                x == 0.0 ? 1.0 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
            const double window = 0.5 + 0.5 * std::cos(std::numbers::pi * x / half);
            table.at(phase).at(tap) = static_cast<float>(sinc * window);
        }
    }
    return table;
}

/// The largest magnitude at each frame and up to the next, between the samples, too.
std::vector<float> peaks(const StereoSound& loop) {
    static const auto table = interpolators();
    const std::size_t frames = loop.frames();
    std::vector<float> peaks(frames, 0.0F);
    if (frames == 0) {
        return peaks;
    }
    for (const auto* side : {&loop.left, &loop.right}) {
        std::vector<float> wrapped(frames + taps);
        for (std::size_t index = 0; index < wrapped.size(); ++index) {
            wrapped[index] = (*side)[(index + frames * taps - (half - 1)) % frames];
        }
        for (std::size_t frame = 0; frame < frames; ++frame) {
            for (const auto& weights : table) {
                float sum = 0;
                for (std::size_t tap = 0; tap < taps; ++tap) {
                    sum += weights.at(tap) * wrapped[frame + tap];
                }
                peaks[frame] = std::max(peaks[frame], std::abs(sum));
            }
        }
    }
    return peaks;
}

/// The minimum within `reach` before and after each frame, wrapping at the loop's ends.
std::vector<float> leastAround(const std::vector<float>& values) {
    const auto frames = static_cast<std::int64_t>(values.size());
    const auto span = static_cast<std::int64_t>(reach);
    const auto value = [&](std::int64_t index) {
        return values[static_cast<std::size_t>(((index % frames) + frames) % frames)];
    };
    std::vector<float> least(values.size());
    std::deque<std::int64_t> rising;
    for (std::int64_t ahead = -span; ahead < frames + span; ++ahead) {
        while (!rising.empty() && value(rising.back()) >= value(ahead)) {
            rising.pop_back();
        }
        rising.push_back(ahead);
        const std::int64_t here = ahead - span;
        while (rising.front() < here - span) {
            rising.pop_front();
        }
        if (here >= 0) {
            least[static_cast<std::size_t>(here)] = value(rising.front());
        }
    }
    return least;
}

/// The average over the same window, weighted with a raised cosine, which smooths steps and stays
/// between the minimum and maximum of the window.
std::vector<float> smoothed(const std::vector<float>& values) {
    std::vector<double> weights(2 * reach + 1);
    double sum = 0;
    for (std::size_t index = 0; index < weights.size(); ++index) {
        const double phase = (static_cast<double>(index) + 1) / (2 * reach + 2);
        weights[index] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * phase);
        sum += weights[index];
    }
    // Loop only over the frames with reduction: most of a loop is far from any peak.
    std::vector<double> reductions(values.size(), 0.0);
    for (std::size_t frame = 0; frame < values.size(); ++frame) {
        if (values[frame] >= 1.0F) {
            continue;
        }
        for (std::size_t index = 0; index < weights.size(); ++index) {
            const std::size_t at = (frame + index + values.size() * reach - reach) % values.size();
            reductions[at] += weights[index] * (1.0 - static_cast<double>(values[frame]));
        }
    }
    std::vector<float> smooth(values.size());
    for (std::size_t frame = 0; frame < values.size(); ++frame) {
        smooth[frame] = static_cast<float>(1.0 - reductions[frame] / sum);
    }
    return smooth;
}

}  // namespace

void limit(StereoSound& loop, float ceiling) {
    std::vector<float> gains = peaks(loop);
    bool needed = false;
    for (float& gain : gains) {
        needed = needed || gain > ceiling;
        gain = gain > ceiling ? ceiling / gain : 1.0F;
    }
    if (!needed) {
        return;
    }
    gains = smoothed(leastAround(gains));
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        loop.left[frame] *= gains[frame];
        loop.right[frame] *= gains[frame];
    }
}

}  // namespace orvalo
