#pragma once

#include <string>

#include "platform/foundation/Data.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// The whole content of an address of a file or of the web (http, https). Blocks, up to 60 seconds
/// without progress. Throws NSError when it cannot be read, and for a server's status of 400 or
/// above. Any thread but the render thread.
Data contentsOf(const URL& url);

/// The content as UTF-8 text. Throws NSError as contentsOf() does, and for other bytes.
std::string textContentsOf(const URL& url);

}  // namespace orvalo
