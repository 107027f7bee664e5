#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// Values as JSON (RFC 8259), so that every value comes back as it was:
//   text, truth value, list, dictionary     as JSON has them
//   integer                                 a number without "." and exponent, of 64 bits
//   float                                   a number with "." or an exponent
//   float that JSON has not                 {"$real": "inf"}, "-inf" or "nan"
//   data                                    {"$data": "<Base64>"}
//   date                                    {"$date": "2026-11-21T08:30:00.25Z"}
//   dictionary of one key that begins so    {"$dictionary": {"$date": "a text"}}

/// The value, indented by two blanks, without a line feed at the end. Control characters are
/// escaped, so that no terminal obeys them. A NaN loses its sign and payload.
std::string jsonText(const PropertyList& value);

/// The same of a domain: its entries in one object, which stands for nothing but itself.
std::string jsonText(const PropertyList::Dictionary& domain);

/// The value of a JSON text. Throws FormatError: for what is no JSON, a key that stands twice,
/// null, a number out of range, a form that begins with "$" and is none of the above.
PropertyList jsonValue(std::string_view text);

/// The entries of a domain. Throws FormatError, for what is no object too.
PropertyList::Dictionary jsonDomain(std::string_view text);

}  // namespace orvalo
