#pragma once

#include <string>

#include "platform/foundation/NSError.h"

namespace orvalo {

/// What can be wrong with an LV2 plug-in; the codes of the error domain "LV2".
enum class LV2ErrorCode {
    unknownPlugin = 1,
    noLibrary,
    unsupportedFeature,
    unsupportedPort,
    instantiationFailed,
    stateFailed,
    badData,
    noPluginUI,
};

/// The error "<uri>: reason": the plug-in in front, the reason as a clause without a full stop.
NSError lv2Error(LV2ErrorCode code, const std::string& uri, const std::string& reason);

}  // namespace orvalo
