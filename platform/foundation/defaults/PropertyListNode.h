#pragma once

#include <plist/plist.h>

#include <cstddef>
#include <memory>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// A value as libplist has it.
using PropertyListNode = std::unique_ptr<void, Release<plist_free>>;

/// How deep lists and dictionaries may lie in each other.
inline constexpr int kMostPropertyListDepth = 128;
/// How many values one may stand for, keys included.
inline constexpr std::size_t kMostPropertyListValues = 1'000'000;

/// The value for libplist to write. Throws NSError, whose text says what is wrong, for a value that
/// it cannot hold: see UserDefaults.
PropertyListNode nodeOf(const PropertyList& value);
/// The value that libplist has read. Throws NSError for what is no value of ours: an integer above
/// 64 signed bits, a date out of range, an archiver's reference, text that is not UTF-8, nesting
/// that is too deep.
PropertyList valueOf(plist_t node);

}  // namespace orvalo
