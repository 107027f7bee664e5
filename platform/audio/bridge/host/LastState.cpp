#include "platform/audio/bridge/host/LastState.h"

#include <algorithm>
#include <cmath>

namespace orvalo {

namespace {

bool isInRange(float value, const LV2Port& port, double sampleRate) {
    // A bound times the rate may be rounded differently by the effect.
    constexpr double kTolerance = 1e-6;
    const double factor = port.scalesWithRate ? sampleRate : 1.0;
    const double low = port.minimum * factor;
    const double high = port.maximum * factor;
    const double tolerance = std::isfinite(high - low) ? (high - low) * kTolerance : 0.0;
    return std::isfinite(value) && value >= low - tolerance && value <= high + tolerance;
}

}  // namespace

void LastState::takeControls(std::span<const std::atomic<float>> values,
                             const std::vector<LV2Port>& ports) {
    for (const auto& port : ports) {
        if (port.index < values.size()) {
            takeControl(values[port.index].load(std::memory_order_relaxed), port);
        }
    }
}

void LastState::takeControl(float value, const LV2Port& port) {
    if (port.kind != LV2PortKind::control || !port.isInput || !isInRange(value, port, sampleRate)) {
        return;
    }
    const auto known = std::find_if(
        controls.begin(), controls.end(),
        [&port](const bridge::ControlValue& control) { return control.port == port.index; });
    if (known == controls.end()) {
        controls.push_back({port.index, value});
    } else {
        known->value = value;
    }
}

}  // namespace orvalo
