#pragma once

#include "platform/foundation/Data.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// The whole content of an address, of a file or of the web (http, https), which the calling thread
/// waits for: up to 60 seconds without any progress. Throws NSError when it cannot be read; so is a
/// server's answer of status 400 or above, which is a message about the content and not the
/// content. Any thread but the render thread.
Data contentsOf(const URL& url);

}  // namespace orvalo
