#pragma once

#include <string>

#include "platform/foundation/Data.h"

namespace orvalo {

/// The whole content of a file. Throws NSError, naming the path. Any thread.
Data contentsOfFile(const std::string& path);

}  // namespace orvalo
