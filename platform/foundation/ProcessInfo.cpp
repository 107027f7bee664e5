#include "platform/foundation/ProcessInfo.h"

#include <unistd.h>

#include "platform/foundation/ExecutablePath.h"

namespace orvalo {

const ProcessInfo& ProcessInfo::processInfo() {
    static const ProcessInfo info;
    return info;
}

ProcessInfo::ProcessInfo()
    : processName_(executablePath().filename().string()), processIdentifier_(getpid()) {}

}  // namespace orvalo
