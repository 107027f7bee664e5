#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// The text on one line without terminal commands: control characters are escaped as in JSON.
/// Backslashes stay, so that names stay as the user knows them. U+FFFD replaces bytes that are not
/// UTF-8.
std::string onOneLine(std::string_view text);

}  // namespace orvalo
