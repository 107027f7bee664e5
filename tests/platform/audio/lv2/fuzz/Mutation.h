#pragma once

#include <random>
#include <string>

namespace orvalo::testing {

/// The text with one to six random changes: bytes flipped, ranges cut, copied or swapped for what
/// Turtle and LV2 give a meaning to. The same generator state gives the same text.
std::string mutated(std::string text, std::mt19937& generator);

}  // namespace orvalo::testing
