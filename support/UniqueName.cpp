#include "support/UniqueName.h"

#include "platform/foundation/ProcessInfo.h"

namespace orvalo {

std::string uniqueName(const std::optional<std::string>& withPrefix) {
    auto name = ProcessInfo::processInfo().globallyUniqueString();
    return withPrefix ? *withPrefix + "-" + name : name;
}

}  // namespace orvalo
