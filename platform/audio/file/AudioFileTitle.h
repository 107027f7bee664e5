#pragma once

#include <string>

namespace orvalo {

/// The title that an audio file states; without one, the file's name. Never throws. Any thread.
std::string audioFileTitle(const std::string& path);

}  // namespace orvalo
