#pragma once

#include <string>

namespace orvalo {

/// The component registry as a table for people: a heading, then a line an effect, in the
/// registry's order; a sentence when it is empty. Lines end in a line feed but for the last.
std::string registryTable();

}  // namespace orvalo
