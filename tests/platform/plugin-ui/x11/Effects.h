#pragma once

#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "tests/platform/plugin-ui/x11/effects/UIRecord.h"

namespace orvalo::testing {

/// A unit of the test effect "urn:orvalo:ui:<name>". Throws NSError.
std::shared_ptr<LV2LocalAudioUnit> makeUnit(const std::string& name);

/// Calls LV2PluginUIData::read() for a unit.
LV2PluginUIData readUIData(const LV2LocalAudioUnit& unit);

/// The test UI's record since the last resetRecord(). The UI's library stays loaded.
zoo::UIRecord& uiRecord();
void resetRecord();

/// Renders blocks of 64 frames.
void render(AUAudioUnit& unit, int blockCount = 1);

}  // namespace orvalo::testing
