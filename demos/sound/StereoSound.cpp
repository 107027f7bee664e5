#include "demos/sound/StereoSound.h"

#include <algorithm>
#include <cmath>

namespace orvalo {

void StereoSound::scale(float factor) {
    for (auto* side : {&left, &right}) {
        for (float& sample : *side) {
            sample *= factor;
        }
    }
}

float StereoSound::peak() const {
    float peak = 0;
    for (const auto* side : {&left, &right}) {
        for (const float sample : *side) {
            peak = std::max(peak, std::abs(sample));
        }
    }
    return peak;
}

}  // namespace orvalo
