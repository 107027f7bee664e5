#pragma once

#include <optional>
#include <string>

#include "platform/audio/lv2/LV2State.h"

namespace orvalo {

/// A state as the bytes that the host keeps for a process to come: the properties, and all URIs of
/// this process, so that the numbers in them mean the same there.
std::string packState(const LV2StateProperties& properties);

/// The properties, after the URIs have got their numbers; absent for what is no such state, or when
/// this process has given those numbers to other URIs.
std::optional<LV2StateProperties> unpackState(const std::string& state);

}  // namespace orvalo
