#include "tests/effect/TestSignal.h"

#include <random>

namespace orvalo::testing {

Stereo noiseBursts(std::size_t frames, std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto unit = [&random] { return static_cast<float>(random()) / 4294967296.0F; };
    Stereo signal{.left = std::vector<float>(frames), .right = std::vector<float>(frames)};
    std::size_t i = 0;
    while (i < frames) {
        const auto loud = i + 200 + random() % 4000;
        const float left = unit();
        const float right = unit();
        for (; i < frames && i < loud; ++i) {
            signal.left[i] = left * (2.0F * unit() - 1.0F);
            signal.right[i] = right * (2.0F * unit() - 1.0F);
        }
        i += random() % 6000;
    }
    return signal;
}

Stereo steady(std::size_t frames, float value) {
    return {.left = std::vector<float>(frames, value), .right = std::vector<float>(frames, value)};
}

}  // namespace orvalo::testing
