#include "demos/theory/Random.h"

namespace orvalo {

Random::Random(std::uint32_t seed) : engine_(seed) {}

int Random::below(int count) {
    // The high half of the product: no division, and a negligible bias.
    const std::uint64_t product = std::uint64_t{engine_()} * static_cast<std::uint64_t>(count);
    return static_cast<int>(product >> 32U);
}

int Random::between(int low, int high) {
    return low + below(high - low + 1);
}

bool Random::chance(int percent) {
    return below(100) < percent;
}

}  // namespace orvalo
