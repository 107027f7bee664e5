#pragma once

#include <string>

namespace orvalo::testing {

/// The bytes of a PNG file: a grey picture of that size in pixels.
std::string pngFile(int width, int height);

}  // namespace orvalo::testing
