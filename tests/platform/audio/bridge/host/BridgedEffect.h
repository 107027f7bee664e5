#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// The effect service as it is staged.
std::filesystem::path effectServicePath();

/// A world of the effects that misbehave, one for the program.
LV2World& misbehavingWorld();

/// Limits with which nothing is late, and what hangs is soon noticed.
BridgeLimits strictLimits();

/// A unit in a process of its own, rendered offline.
std::shared_ptr<BridgedAudioUnit> makeBridged(LV2World& world, const std::string& uri,
                                              const BridgeLimits& limits = strictLimits());

/// Loads the factory preset of that name; false when there is none, or it does not come.
bool loadPreset(AUAudioUnit& unit, const std::string& name);

/// What a unit of two channels is fed. The unit outlives it.
QuantumFeed feed(AUAudioUnit& unit);

}  // namespace orvalo::testing
