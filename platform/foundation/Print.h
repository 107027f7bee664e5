#pragma once

#include <string_view>

namespace orvalo {

/// Writes text and one line feed to standard output, unchanged, as one write, at once. Lines of
/// several threads never mix. A failed write, a closed pipe included, is ignored. Any thread but
/// the render thread.
void print(std::string_view text);

}  // namespace orvalo
