#pragma once

#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "tests/platform/plugin-ui/x11/effects/PluginUIRecord.h"

namespace orvalo::testing {

/// A unit "urn:orvalo:ui:<name>" of the effects here. Throws NSError.
std::shared_ptr<LV2LocalAudioUnit> makeUnit(const std::string& name);

/// What the data say of a unit's UI. Throws NSError.
LV2PluginUIData readPluginUI(const LV2LocalAudioUnit& unit);

/// What the test UI wrote down since the last call of resetRecord(); it stays loaded.
zoo::PluginUIRecord& pluginUIRecord();
void resetRecord();

/// Renders blocks of 64 frames.
void render(AUAudioUnit& unit, int blockCount = 1);

}  // namespace orvalo::testing
