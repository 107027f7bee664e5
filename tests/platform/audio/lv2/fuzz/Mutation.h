#pragma once

#include <random>
#include <string>

namespace orvalo::testing {

/// The text with one to six random changes: bits flipped; ranges removed, copied or replaced by
/// tokens of Turtle and LV2. The same generator state gives the same text.
std::string mutated(std::string text, std::mt19937& generator);

}  // namespace orvalo::testing
