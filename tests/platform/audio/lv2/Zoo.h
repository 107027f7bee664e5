#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2World.h"
#include "tests/platform/audio/lv2/zoo/ProbeRecord.h"

namespace orvalo::testing {

/// The folder of the zoo's bundles.
std::string zooFolder();

/// A world of the zoo's bundles and nothing else, one for the program.
LV2World& zooWorld();

/// A unit of the zoo's plug-in "urn:orvalo:zoo:<name>". Throws NSError.
std::shared_ptr<LV2LocalAudioUnit> makeZooUnit(const std::string& name);

/// The record of the probe's library, which stays loaded.
zoo::ProbeRecord& probeRecord();

/// Sets the unit's control input of that symbol.
void setControl(LV2LocalAudioUnit& unit, const std::string& symbol, float value);

/// One event as the handler received it.
struct SentEvent {
    std::int64_t sampleTime;
    int cable;
    std::vector<int> bytes;  ///< All bytes; at least three.
    std::int64_t length;

    friend bool operator==(const SentEvent&, const SentEvent&) = default;
};

/// Appends the unit's MIDI events to the list, which must outlive the unit's handler.
void collectEvents(AUAudioUnit& unit, std::vector<SentEvent>& events);

}  // namespace orvalo::testing
