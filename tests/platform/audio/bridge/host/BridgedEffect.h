#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "tests/platform/audio/bridge/host/PatientLimits.h"
#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// The path of the staged program effect-service.
std::filesystem::path effectServicePath();

/// A world with the misbehaving effects, shared by all tests.
LV2World& misbehavingWorld();

/// A bridged unit in offline rendering.
std::shared_ptr<BridgedAudioUnit> makeBridged(LV2World& world, const std::string& uri,
                                              const BridgeLimits& limits = patientLimits());

/// Loads the factory preset of that name; false when it is missing or loading fails.
bool loadPreset(AUAudioUnit& unit, const std::string& name);

/// A feed for a unit of two channels. The unit must outlive the feed.
QuantumFeed feed(AUAudioUnit& unit);

}  // namespace orvalo::testing
