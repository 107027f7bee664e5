#pragma once

#include <memory>
#include <string>

#include "platform/audio/interface/LV2InterfaceData.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "tests/interface/effects/InterfaceRecord.h"

namespace orvalo::testing {

/// A unit "urn:orvalo:interface:<name>" of the effects here. Throws NSError.
std::shared_ptr<LV2LocalAudioUnit> makeUnit(const std::string& name);

/// What the data say of a unit's interface. Throws NSError.
LV2InterfaceData readInterface(const LV2LocalAudioUnit& unit);

/// What the test interface wrote down since the last call of resetRecord(); it stays loaded.
zoo::InterfaceRecord& interfaceRecord();
void resetRecord();

/// Renders blocks of 64 frames.
void render(AUAudioUnit& unit, int blockCount = 1);

}  // namespace orvalo::testing
