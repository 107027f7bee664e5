#include "demos/theory/Voicing.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

namespace orvalo {

namespace {

int movement(const std::vector<int>& keys, const std::vector<int>& previous,
             const VoicingRange& range) {
    int sum = 0;
    for (const int key : keys) {
        sum += std::abs(2 * key - range.low - range.high);
    }
    if (previous.size() != keys.size()) {
        return sum;
    }
    // The distance from the middle has a small weight; it only keeps voicings from drifting.
    sum /= 8;
    for (std::size_t index = 0; index < keys.size(); ++index) {
        sum += 4 * std::abs(keys[index] - previous[index]);
    }
    return sum;
}

}  // namespace

std::vector<int> voice(const Chord& chord, const VoicingRange& range,
                       const std::vector<int>& previous) {
    std::vector<int> tones;
    for (int key = range.low; key <= range.high; ++key) {
        if (chord.contains(key)) {
            tones.push_back(key);
        }
    }
    const auto count = std::min(static_cast<std::size_t>(range.voices), tones.size());
    std::vector<int> best;
    int bestMovement = std::numeric_limits<int>::max();
    for (std::size_t start = 0; start + count <= tones.size(); ++start) {
        std::vector<int> keys(tones.begin() + static_cast<std::ptrdiff_t>(start),
                              tones.begin() + static_cast<std::ptrdiff_t>(start + count));
        if (range.open && keys.size() > 2) {
            keys[keys.size() - 2] -= 12;
            std::ranges::sort(keys);
        }
        if (keys.front() < range.low) {
            continue;
        }
        const int moved = movement(keys, previous, range);
        if (moved < bestMovement) {
            bestMovement = moved;
            best = keys;
        }
    }
    return best;
}

}  // namespace orvalo
