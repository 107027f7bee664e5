#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// Untrusted text as one printable line: replaces invalid UTF-8, turns control characters into
/// spaces, trims spaces, and cuts between characters at limit bytes.
std::string plainText(std::string_view text, std::size_t limit = 2000);

}  // namespace orvalo
