#pragma once

#include <lv2/urid/urid.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orvalo {

/// Something that a plug-in keeps by the state extension, to the bit as it gave it: a value of
/// plain bytes, which may hold numbers of the process's URIDMap.
struct LV2StateProperty {
    LV2_URID key = 0;
    LV2_URID type = 0;
    std::uint32_t flags = 0;  ///< LV2_State_Flags.
    std::string body;

    friend bool operator==(const LV2StateProperty&, const LV2StateProperty&) = default;
};

using LV2StateProperties = std::vector<LV2StateProperty>;

}  // namespace orvalo
