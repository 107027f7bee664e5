#pragma once

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2PluginData.h"

namespace orvalo {

/// A value for a control input.
struct ControlSetting {
    std::string symbol;
    float value = 0.0F;
};

/// Reads SYMBOL=VALUE for a plug-in. The value is a number with or without a unit, which is
/// converted to the control's, a label of an enumeration, or "on" or "off" of a switch. Throws
/// std::runtime_error, whose text is one line that names the culprit and says what is possible.
ControlSetting readSetting(const LV2World::Access& access, const LV2PluginData& plugin,
                           const std::string& text);

/// The position of the first name that contains the text, else of the one most like it; names: not
/// empty.
std::size_t nearest(const std::string& text, const std::vector<std::string>& names);

}  // namespace orvalo
