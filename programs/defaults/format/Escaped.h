#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// The text on one line that no terminal takes for a command: control characters and a backslash
/// as JSON escapes them, bytes that are no UTF-8 as \xHH.
std::string escaped(std::string_view text);

/// The same, cut behind some 200 characters, for what others have to say.
std::string shortened(std::string_view text);

/// The same between quotation marks 'so', cut behind some 60 characters.
std::string inQuotes(std::string_view text);

}  // namespace orvalo
