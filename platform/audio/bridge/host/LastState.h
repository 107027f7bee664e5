#pragma once

#include <atomic>
#include <span>
#include <string>
#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/lv2/LV2Port.h"

namespace orvalo {

/// The last known state of an effect, from which a restarted service continues. One thread.
struct LastState {
    std::string contextName{};
    double sampleRate = ExpectedRendering{}.sampleRate;  ///< Hz.
    std::string state{};  ///< As the service sent it, opaque; "" while unknown.
    /// The URI of the preset that was loaded before the effect ran, and so before its state was
    /// known; "" without one.
    std::string preset{};
    std::vector<bridge::ControlValue> controls{};

    /// Takes the value of a port that is a control input, if it is finite and within the range.
    void takeControl(float value, const LV2Port& port);
    /// Takes the control inputs' values that a service left in shared memory, by port index. A
    /// value that is not finite or outside its port's range is ignored.
    void takeControls(std::span<const std::atomic<float>> values,
                      const std::vector<LV2Port>& ports);
};

}  // namespace orvalo
