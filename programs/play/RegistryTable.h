#pragma once

#include <string>

namespace orvalo {

/// The component registry as text: a heading and one line for each effect, in the registry's order;
/// a sentence when it is empty. No line feed at the end.
std::string registryTable();

/// All LV2 plug-ins on the search path by URI, with their audio channels, as such a table. "-"
/// stands for the channels of a plug-in that the host cannot use.
std::string installedTable();

}  // namespace orvalo
