#pragma once

#include <string>
#include <string_view>

namespace orvalo {

// Files that are read and written at one go; "-" is standard input and output. Both throw NSError,
// whose text names the file.

/// What the file holds: of at most 64 MB.
std::string readWholeFile(const std::string& path);

/// Puts the text in the file's place, for its owner's eyes only, or leaves the file as it was. What
/// is no regular file, such as a device, is written to.
void writeWholeFile(const std::string& path, std::string_view text);

}  // namespace orvalo
