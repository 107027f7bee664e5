#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

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
