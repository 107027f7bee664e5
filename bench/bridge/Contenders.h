#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/bridge/BareHandover.h"
#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo::bench {

/// The same effect in this process and in a service, and the bare hand-over.
struct Contenders {
    explicit Contenders(const std::string& uri);

    std::shared_ptr<LV2LocalAudioUnit> local;
    std::shared_ptr<BridgedAudioUnit> bridged;
    pid_t service;  ///< The effect service.
    std::unique_ptr<BareHandover> bare = std::make_unique<BareHandover>();
};

std::shared_ptr<LV2LocalAudioUnit> makeLocal(const std::string& uri);
std::shared_ptr<BridgedAudioUnit> makeBridged(const std::string& uri);

/// The costs of rendering, by quantum.
struct QuantumCosts {
    std::vector<double> local;      ///< Elapsed time, in µs.
    std::vector<double> bridged;    ///< Likewise.
    std::vector<double> added;      ///< Bridged minus local, of the same quantum.
    std::vector<double> bare;       ///< The bare hand-over.
    double localProcessor = 0.0;    ///< Seconds of processor time for a second of audio.
    double bridgedProcessor = 0.0;  ///< Likewise, including the service.
    std::uint64_t lateCount = 0;    ///< Late quanta of the bridged effect.
};

/// Renders each quantum with both effects and makes a bare hand-over, at a device's pace, on a
/// thread with an output's priority. Their order rotates, because the first contender finds the
/// processor's caches cold.
QuantumCosts renderPaced(const Contenders& contenders, std::uint32_t frames, int seconds);

}  // namespace orvalo::bench
