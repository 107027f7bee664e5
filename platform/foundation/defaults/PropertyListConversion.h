#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// A value of any kind as one of another kind. UserDefaults states the rules.
std::optional<std::string> textOf(const PropertyList& value);
std::int64_t integerOf(const PropertyList& value);
float floatOf(const PropertyList& value);
bool truthOf(const PropertyList& value);
std::optional<URL> addressOf(const PropertyList& value);

}  // namespace orvalo
