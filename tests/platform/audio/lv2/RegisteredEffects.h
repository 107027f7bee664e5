#pragma once

#include <map>
#include <string>

namespace orvalo::testing {

/// Registers installed effects, addresses by subtype, as effects "aufx" of "REAL", each by the name
/// "REAL: <subtype>": by one bundle that stands in front of the standard path. Once in a program,
/// before any other thread is there.
void registerEffects(const std::map<std::string, std::string>& effects);

}  // namespace orvalo::testing
