#pragma once

#include <string>

#include "platform/foundation/URL.h"

namespace orvalo {

/// The whole content of an address as a text, UTF-8. Throws NSError when it cannot be read, as
/// contentsOf() does, or is no such text. Any thread but the render thread.
std::string textContentsOf(const URL& url);

}  // namespace orvalo
