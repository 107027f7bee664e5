#pragma once

#include <optional>

#include "platform/foundation/URL.h"

namespace orvalo {

/// An address from the web engine; absent for a null or empty text. Escapes the characters that
/// RFC 3986 requires to be escaped and the engine does not escape.
std::optional<URL> webAddress(const char* text);

}  // namespace orvalo
