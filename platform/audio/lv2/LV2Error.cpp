#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

NSError lv2Error(LV2ErrorCode code, const std::string& uri, const std::string& reason) {
    return {"LV2", static_cast<std::int64_t>(code),
            "The plug-in <" + uri + "> cannot be used: " + reason + "."};
}

}  // namespace orvalo
