#pragma once

#include <string>

#include "platform/foundation/Data.h"

namespace orvalo {

/// The whole content of a file. Throws NSError, naming the path. Any thread but the render thread.
/// g_file_get_contents() has no error number for the domain "NSPOSIXErrorDomain", and its texts are
/// in the user's language.
Data contentsOfFile(const std::string& path);

}  // namespace orvalo
