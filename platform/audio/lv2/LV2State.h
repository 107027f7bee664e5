#pragma once

#include <lv2/urid/urid.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// A plug-in's saved state: its control values and its properties by the state extension.
using LV2State = std::shared_ptr<const LilvState>;

/// Takes ownership of a state. The world must outlive it.
inline LV2State keep(LV2World& world, LilvState* state) {
    return {state, [&world](const LilvState* kept) {
                const LV2World::Access access(world);
                lilv_state_free(const_cast<LilvState*>(kept));
            }};
}

/// A value that a plug-in saved by the state extension: plain bytes, which may hold numbers of the
/// process's URIDMap.
struct LV2StateProperty {
    LV2_URID key = 0;
    LV2_URID type = 0;
    std::uint32_t flags = 0;  ///< LV2_State_Flags.
    std::string body;

    friend bool operator==(const LV2StateProperty&, const LV2StateProperty&) = default;
};

using LV2StateProperties = std::vector<LV2StateProperty>;

}  // namespace orvalo
