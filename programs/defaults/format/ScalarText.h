#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// Values that are one word, as both formats and the command line write them.

/// ISO 8601 in UTC, with as many digits of a second as it takes, at most six:
/// "2026-11-21T08:30:00.25Z". A year before 0 or after 9999 has a sign.
std::string dateText(PropertyList::Date date);
/// The date of such a text; absent when it is another, or names no date or none that can be stored.
std::optional<PropertyList::Date> dateValue(std::string_view text);

/// Base64 (RFC 4648, section 4) on one line.
std::string base64Text(const Data& data);
/// The data of such a text, which may have blanks and line feeds in it; absent when it is another.
std::optional<Data> base64Value(std::string_view text);

/// A whole decimal number of 64 bits with an optional sign; absent when the text is another.
std::optional<std::int64_t> integerValue(std::string_view text);
/// A decimal number, or "inf", "infinity" or "nan", with an optional sign; absent when the text is
/// another, or too great for a number of double precision.
std::optional<double> realValue(std::string_view text);
/// The shortest decimal number that is read as this one; "inf", "-inf" or "nan".
std::string realText(double value);

}  // namespace orvalo
