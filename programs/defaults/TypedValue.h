#pragma once

#include <string>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// What a text stands for behind an option of "write": "string", "int", "float", "bool", "date",
/// "data" or "json". Throws BadOption for a text that is no such value.
PropertyList typedValue(const std::string& type, const std::string& text);

}  // namespace orvalo
