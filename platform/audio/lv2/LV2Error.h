#pragma once

#include <string>

#include "platform/foundation/NSError.h"

namespace orvalo {

/// Codes of the error domain "LV2".
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

/// The error "The plug-in <uri> cannot be used: reason." The reason is a clause without a full
/// stop.
NSError lv2Error(LV2ErrorCode code, const std::string& uri, const std::string& reason);

/// lv2Error(), or a function that makes the same of a plug-in's UI.
using LV2MakeError = NSError (*)(LV2ErrorCode code, const std::string& uri,
                                 const std::string& reason);

}  // namespace orvalo
