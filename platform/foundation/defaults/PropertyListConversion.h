#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// What a setting's value counts as where another kind is asked for: see UserDefaults.
std::optional<std::string> textOf(const PropertyList& value);
std::int64_t integerOf(const PropertyList& value);
float floatOf(const PropertyList& value);
double doubleOf(const PropertyList& value);
bool truthOf(const PropertyList& value);
std::optional<URL> addressOf(const PropertyList& value);

}  // namespace orvalo
