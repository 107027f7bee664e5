#pragma once

#include <memory>

#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// A plug-in's state without the instance that had it: control values and what the plug-in keeps
/// by the state extension.
using LV2State = std::shared_ptr<const LilvState>;

/// Takes a state of lilv's into care; the world must outlive it.
inline LV2State keep(LV2World& world, LilvState* state) {
    return {state, [&world](const LilvState* kept) {
                const LV2World::Access access(world);
                lilv_state_free(const_cast<LilvState*>(kept));
            }};
}

}  // namespace orvalo
