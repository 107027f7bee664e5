#pragma once

#include <string>

namespace orvalo {

// "-" is standard input or output. Both throw std::runtime_error, which names the file.

std::string readWholeFile(const std::string& path);

/// Replaces a regular file or makes one (mode 0600): wholly, or not at all when it throws. Follows
/// links. Writes into a file of another kind.
void writeWholeFile(const std::string& path, const std::string& text);

}  // namespace orvalo
