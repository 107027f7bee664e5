#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// The text on one line that no terminal takes for a command: control characters and backslashes
/// escaped as in JSON. U+FFFD replaces bytes that are not UTF-8.
std::string escaped(std::string_view text);

/// The same between single quotes, cut after 60 bytes.
std::string inQuotes(std::string_view text);

/// Only the control characters escaped, and line feeds kept.
std::string withoutControls(std::string_view text);

}  // namespace orvalo
