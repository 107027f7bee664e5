#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// Text from a stranger as one line for people: what is no UTF-8 is replaced, control characters
/// become blanks, blanks at either end go, and at most limit bytes are left, cut between
/// characters.
std::string plainText(std::string_view text, std::size_t limit = 2000);

}  // namespace orvalo
