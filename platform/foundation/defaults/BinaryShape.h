#pragma once

#include <cstdint>
#include <span>

namespace orvalo {

/// Looks at how the values of a binary property list lie in each other, before libplist follows
/// them, which goes as deep and makes as much as the bytes demand: the same list ten times in a
/// list that is ten times in a list. Throws NSError when the bytes are none, lead out of
/// themselves or into a circle, are nested deeper than 128, or stand for more than a million
/// values.
void checkBinaryShape(std::span<const std::uint8_t> binary);

}  // namespace orvalo
