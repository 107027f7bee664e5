#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// An entry as the file has it: a binary property list, or absent to remove the key.
struct BinaryEntry {
    std::string_view key;
    std::optional<std::span<const std::uint8_t>> value;
};

/// What has become of a domain's entries since they were looked at before.
struct DefaultsChanges {
    struct Entry {
        std::string key;
        std::optional<PropertyList> value;  ///< Absent: removed.
    };

    bool isWhole = false;  ///< These are all entries; what was known before counts no longer.
    std::vector<Entry> entries;
};

}  // namespace orvalo
