#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/bridge/BareHandover.h"
#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo::bench {

/// The same effect in this process and in one of its own, and what the way there takes at least.
struct Contenders {
    explicit Contenders(const std::string& uri);

    std::shared_ptr<LV2LocalAudioUnit> local;
    std::shared_ptr<BridgedAudioUnit> bridged;
    pid_t service;  ///< Of the bridged one.
    std::unique_ptr<BareHandover> bare = std::make_unique<BareHandover>();
};

std::shared_ptr<LV2LocalAudioUnit> makeLocal(const std::string& uri);
std::shared_ptr<BridgedAudioUnit> makeBridged(const std::string& uri);

/// The processor's time that a process has used, in ns.
std::int64_t processNanoseconds(pid_t process);

/// What rendering one quantum took of each.
struct QuantumCosts {
    std::vector<double> local;      ///< Passing time, in µs.
    std::vector<double> bridged;    ///< Likewise.
    std::vector<double> added;      ///< Bridged less local, quantum by quantum.
    std::vector<double> bare;       ///< The bare hand-over.
    double localProcessor = 0.0;    ///< Seconds of the processor for a second of audio.
    double bridgedProcessor = 0.0;  ///< Likewise, the effect's process included.
    std::uint64_t lateCount = 0;    ///< Of the bridged one.
};

/// Renders with both and hands over barely, one after the other in each quantum, at the pace at
/// which a device would ask, on a thread with an output's priority. Each comes first in its turn,
/// since the first one finds the processor's caches cold.
QuantumCosts renderPaced(const Contenders& contenders, std::uint32_t frames, int seconds);

}  // namespace orvalo::bench
