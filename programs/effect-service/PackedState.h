#pragma once

#include <optional>
#include <string>

#include "platform/audio/lv2/LV2StateProperty.h"

namespace orvalo {

/// A state as bytes for the next service: the properties, and the URIs of this process in the order
/// of their numbers, so that numbers inside the state keep their meaning.
std::string packState(const LV2StateProperties& properties);

/// Gives the URIs their numbers and returns the properties. Absent when the bytes are no packed
/// state, or this process has given the numbers to other URIs.
std::optional<LV2StateProperties> unpackState(const std::string& state);

}  // namespace orvalo
