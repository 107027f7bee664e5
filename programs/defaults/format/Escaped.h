#pragma once

#include <string>
#include <string_view>

namespace orvalo {

/// The text on one line without terminal commands: control characters and backslashes are escaped
/// as in JSON, except those in `kept`. U+FFFD replaces bytes that are not UTF-8.
std::string escaped(std::string_view text, std::string_view kept = {});

/// The text between single quotes, cut after 60 bytes. Not escaped.
std::string inQuotes(std::string_view text);

}  // namespace orvalo
