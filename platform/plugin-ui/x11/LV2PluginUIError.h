#pragma once

#include <string>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

/// The error "The UI of <plugin> cannot be shown: reason.", of the domain "LV2". The reason
/// is a clause without a full stop.
inline NSError lv2PluginUIError(LV2ErrorCode code, const std::string& plugin,
                                const std::string& reason) {
    return {"LV2", static_cast<std::int64_t>(code),
            "The UI of <" + plugin + "> cannot be shown: " + reason + "."};
}

}  // namespace orvalo
