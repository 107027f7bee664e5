#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// The text on one line without terminal commands: control characters and backslashes are escaped
/// as in JSON. U+FFFD replaces bytes that are not UTF-8.
std::string escaped(std::string_view text);

/// The same between single quotes, cut after 60 bytes.
std::string inQuotes(std::string_view text);

/// The text with only its control characters escaped, except line feeds.
std::string withoutControls(std::string_view text);

}  // namespace orvalo
