#pragma once

#include <string>

namespace orvalo {

/// The component registry as text: a heading and one line for each effect, in the registry's order;
/// a sentence when it is empty. No line feed at the end.
std::string registryTable();

}  // namespace orvalo
