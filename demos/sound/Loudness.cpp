#include "demos/sound/Loudness.h"

#include <ebur128.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

#include "demos/sound/LoopLimiter.h"

namespace orvalo {

namespace {

/// Passes measured: three, so that the incomplete blocks at the start have no weight.
constexpr int passes = 3;
constexpr double tolerance = 0.05;
constexpr double refusedBeyond = 0.2;
constexpr int rounds = 8;

struct Destroy {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

}  // namespace

double loudness(const StereoSound& loop, int rate) {
    const std::unique_ptr<ebur128_state, Destroy> state(
        ebur128_init(2, static_cast<unsigned long>(rate), EBUR128_MODE_I));
    if (!state) {
        throw std::runtime_error("libebur128 cannot create a loudness meter");
    }
    std::vector<float> interleaved(2 * loop.frames());
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        interleaved[2 * frame] = loop.left[frame];
        interleaved[2 * frame + 1] = loop.right[frame];
    }
    double measured = 0;
    for (int pass = 0; pass < passes; ++pass) {
        if (ebur128_add_frames_float(state.get(), interleaved.data(), loop.frames()) !=
            EBUR128_SUCCESS) {
            throw std::runtime_error("libebur128 cannot measure the frames");
        }
    }
    if (ebur128_loudness_global(state.get(), &measured) != EBUR128_SUCCESS) {
        throw std::runtime_error("libebur128 gives no loudness");
    }
    return measured;
}

void normalise(StereoSound& loop, int rate, double target, float ceiling) {
    double off = target - loudness(loop, rate);
    for (int round = 0; round < rounds; ++round) {
        if (!std::isfinite(off)) {
            throw std::runtime_error("the loop is silent");
        }
        // Limiting lowers the loudness; the next round compensates.
        loop.scale(static_cast<float>(std::pow(10.0, off / 20.0)));
        limit(loop, ceiling);
        off = target - loudness(loop, rate);
        if (std::abs(off) < tolerance) {
            return;
        }
    }
    if (std::abs(off) > refusedBeyond) {
        throw std::runtime_error("the loop cannot reach its loudness below the peak ceiling");
    }
}

}  // namespace orvalo
