#pragma once

#include <span>
#include <string>

#include "platform/foundation/Data.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// A value in a settings file is a serialised GVariant of type "v", in the byte order of the
// machine. It holds
//   truth value  b        text   s           list        av
//   integer      x        data   ay          dictionary  a{sv}
//   float        d        date   (x), in microseconds since 1970-01-01 00:00 UTC

/// How deep lists and dictionaries may lie in each other; GVariant's own limit is little higher.
inline constexpr int kMostPropertyListDepth = 40;

/// The bytes of a value, at most 16 MB. Throws NSError, whose text is the reason, for a text that
/// is not UTF-8 or holds a NUL, a date outside the years 1 to 9999, and a value too deep or too
/// large. Any thread.
Data binaryPropertyList(const PropertyList& value);

/// The value of such bytes. Throws NSError for all others. Any thread.
PropertyList propertyList(std::span<const std::uint8_t> binary);

/// The reason why a value is refused, such as "it is nested too deeply".
NSError propertyListError(const std::string& reason);

}  // namespace orvalo
