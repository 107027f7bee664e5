#pragma once

#include <string>

namespace orvalo {

// "-" is standard input or output. Both throw std::runtime_error, which names the file.

std::string readWholeFile(const std::string& path);

/// Replaces a regular file atomically, or creates one (mode 0600). Follows links. Writes directly
/// into an existing file of another kind.
void writeWholeFile(const std::string& path, const std::string& text);

}  // namespace orvalo
