#include "platform/audio/bridge/host/LastState.h"

#include <algorithm>

namespace orvalo {

void LastState::takeControls(std::span<const std::atomic<float>> values,
                             const std::vector<ControlRange>& ranges) {
    for (const auto& range : ranges) {
        if (range.port >= values.size()) {
            continue;
        }
        const float value = values[range.port].load(std::memory_order_relaxed);
        if (!range.holds(value, sampleRate)) {
            continue;
        }
        const auto known = std::find_if(
            controls.begin(), controls.end(),
            [&range](const bridge::ControlValue& control) { return control.port == range.port; });
        if (known == controls.end()) {
            controls.push_back({range.port, value});
        } else {
            known->value = value;
        }
    }
}

}  // namespace orvalo
