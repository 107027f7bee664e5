#pragma once

#include <map>
#include <string>

namespace orvalo::testing {

/// Registers installed effects, given as URIs by subtype, with type "aufx", manufacturer "REAL" and
/// name "REAL: <subtype>", through a bundle in front of /usr/lib/lv2. Once in a program, before it
/// starts threads.
void registerEffects(const std::map<std::string, std::string>& effects);

}  // namespace orvalo::testing
