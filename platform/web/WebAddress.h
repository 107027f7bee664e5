#pragma once

#include <optional>

#include "platform/foundation/URL.h"

namespace orvalo {

/// The address that the web engine writes so; absent for a null or empty text. Engines leave a few
/// characters as they stand that an address of RFC 3986 has escaped: they come escaped.
std::optional<URL> webAddress(const char* text);

}  // namespace orvalo
