#include "tests/platform/audio/bridge/host/Transcript.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace orvalo::testing {

namespace {

using Block = QuantumFeed::Block;

constexpr std::size_t kFade = 64;

Block effectOf(const Block& input) {
    auto output = input;
    for (auto& channel : output) {
        for (auto& sample : channel) {
            sample *= 0.5F;
        }
    }
    return output;
}

Block fadedToInput(const Block& input, const std::vector<float>& last) {
    auto output = input;
    for (std::size_t channel = 0; channel < input.size(); ++channel) {
        const float step = last[channel] - input[channel][0];
        for (std::size_t frame = 0; frame < kFade; ++frame) {
            output[channel][frame] += step * (static_cast<float>(kFade - frame) / kFade);
        }
    }
    return output;
}

/// A crossfade from the input to the service's output.
Block fadedFromInput(const Block& input, Block output) {
    for (std::size_t channel = 0; channel < input.size(); ++channel) {
        for (std::size_t frame = 0; frame < kFade; ++frame) {
            const float share = static_cast<float>(frame) / kFade;
            output[channel][frame] =
                input[channel][frame] * (1.0F - share) + output[channel][frame] * share;
        }
    }
    return output;
}

}  // namespace

Transcript::Kind Transcript::add(const QuantumFeed::Quantum& quantum) {
    kinds_.push_back(kindOf(quantum));
    last_.clear();
    for (const auto& channel : quantum.output) {
        last_.push_back(channel.back());
    }
    return kinds_.back();
}

Transcript::Kind Transcript::kindOf(const QuantumFeed::Quantum& quantum) const {
    const auto before = kinds_.empty() ? Kind::other : kinds_.back();
    const bool wasWet = before == Kind::wet || before == Kind::bare || before == Kind::toWet;
    const bool wasDry = before == Kind::dry || before == Kind::toDry;
    if (!wasDry && quantum.output == effectOf(quantum.input)) {
        return Kind::wet;
    }
    if (!wasWet && quantum.output == quantum.input) {
        return Kind::dry;
    }
    if (wasWet && quantum.output == fadedToInput(quantum.input, last_)) {
        return Kind::toDry;
    }
    if (wasWet && quantum.output == quantum.input) {
        return Kind::bare;
    }
    const bool isFadedBack =
        wasDry && (quantum.output == fadedFromInput(quantum.input, effectOf(quantum.input)) ||
                   quantum.output == fadedFromInput(quantum.input, quantum.input));
    return isFadedBack ? Kind::toWet : Kind::other;
}

std::size_t Transcript::count(Kind kind) const {
    return static_cast<std::size_t>(std::count(kinds_.begin(), kinds_.end(), kind));
}

std::ostream& operator<<(std::ostream& stream, Transcript::Kind kind) {
    constexpr std::array<const char*, 6> kNames{"wet", "bare", "to dry", "dry", "to wet", "other"};
    return stream << kNames[static_cast<std::size_t>(kind)];
}

}  // namespace orvalo::testing
