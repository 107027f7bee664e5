#include "platform/ui/MainThread.h"

#include <string>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo {

void requireMainThread(std::string_view operation) {
    if (!RunLoop::isMainThread()) {
        fatalError(std::string(operation) +
                   " was called from a thread other than the main thread.");
    }
}

}  // namespace orvalo
