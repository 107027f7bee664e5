#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// Values as JSON:
//   text, truth value, list, dictionary     as in JSON
//   integer                                 a number without "." and exponent, of 64 bits
//   float                                   a number with "." or an exponent, or a larger integer
//   infinite float, NaN                     {"$real": "inf"}, "-inf" or "nan"; any number is read
//   data                                    {"$data": "<Base64>"}
//   date                                    {"$date": "2026-11-21T08:30:00.250000Z"}
//   dictionary with one key like "$date"    {"$dictionary": {"$date": ...}}
// jsonValue() of jsonText() gives the same value, except that a NaN loses its sign and payload.

/// The value, indented by two blanks, without a line feed at the end and without control
/// characters.
std::string jsonText(const PropertyList& value);

/// The entries of a domain in one object, which is never one of the "$" forms.
std::string jsonText(const PropertyList::Dictionary& domain);

/// The value of a JSON text. Throws std::runtime_error, whose text is the reason: for
/// text that is not JSON, null, an integer from 2^63 to 2^64 and an unknown "$" form. Of two equal
/// keys of an object the last one counts.
PropertyList jsonValue(std::string_view text);

/// The entries of a domain. Throws as jsonValue() does, with the entry's key, and for text that is
/// not an object.
PropertyList::Dictionary jsonDomain(std::string_view text);

/// The value that a text stands for under "$date", "$data" or "$real"; absent when it is not one.
std::optional<PropertyList> formValue(std::string_view form, const std::string& text);

/// The text between single quotes, cut after 60 bytes. Not escaped.
std::string inQuotes(std::string_view text);

}  // namespace orvalo
