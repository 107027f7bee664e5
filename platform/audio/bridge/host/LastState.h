#pragma once

#include <atomic>
#include <span>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/ControlRange.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"

namespace orvalo {

/// What the host knows last of an effect, so that a new process can go on where the one before
/// ended. One thread.
struct LastState {
    std::string contextName;
    double sampleRate = 0.0;  ///< Hz; 0 before the first.
    std::string state;        ///< As the process gave it, never looked into; "" before.
    std::vector<bridge::ControlValue> controls;

    /// Takes the values that a process left in shared memory: those that are numbers within their
    /// range. Another keeps what was known before.
    void takeControls(std::span<const std::atomic<float>> values,
                      const std::vector<ControlRange>& ranges);
};

}  // namespace orvalo
