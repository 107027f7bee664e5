#pragma once

#include <span>

#include "platform/foundation/Data.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// A value as a binary property list of at most 16 MB. Throws NSError, whose text says what is
/// wrong, for a value that cannot be one. Any thread.
Data binaryPropertyList(const PropertyList& value);

/// The value of a binary property list. Throws NSError for whatever is none, is nested deeper than
/// 128, or stands for more than a million values. Any thread.
PropertyList propertyList(std::span<const std::uint8_t> binary);

}  // namespace orvalo
