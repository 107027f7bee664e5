#include "demos/sound/Mix.h"

#include <cmath>

#include "demos/sound/Loudness.h"
#include "demos/sound/Renderer.h"

namespace orvalo {

namespace {

/// Correlation of the sides, from -1 to 1, below which one side is inverted.
constexpr double opposite = -0.3;

}  // namespace

StereoSound fold(const StereoSound& sound, std::size_t frames) {
    StereoSound loop;
    loop.resize(frames);
    for (std::size_t frame = 0; frame < sound.frames(); ++frame) {
        loop.left[frame % frames] += sound.left[frame];
        loop.right[frame % frames] += sound.right[frame];
    }
    return loop;
}

void matchSides(StereoSound& sound) {
    double product = 0;
    double leftEnergy = 0;
    double rightEnergy = 0;
    for (std::size_t frame = 0; frame < sound.frames(); ++frame) {
        const double left = sound.left[frame];
        const double right = sound.right[frame];
        product += left * right;
        leftEnergy += left * left;
        rightEnergy += right * right;
    }
    if (product < opposite * std::sqrt(leftEnergy * rightEnergy)) {
        for (float& sample : sound.right) {
            sample = -sample;
        }
    }
}

StereoSound mix(const Score& score, const std::filesystem::path& soundFont, int rate,
                std::size_t frames) {
    StereoSound mixed;
    mixed.resize(frames);
    for (std::size_t part = 0; part < score.parts.size(); ++part) {
        StereoSound played = fold(render(score, part, soundFont, rate), frames);
        matchSides(played);
        const double off = score.parts[part].loudness - loudness(played, rate);
        // A part whose patterns contain only rests is silent.
        if (!std::isfinite(off)) {
            continue;
        }
        const auto gain = static_cast<float>(std::pow(10.0, off / 20.0));
        for (std::size_t frame = 0; frame < frames; ++frame) {
            mixed.left[frame] += gain * played.left[frame];
            mixed.right[frame] += gain * played.right[frame];
        }
    }
    return mixed;
}

}  // namespace orvalo
