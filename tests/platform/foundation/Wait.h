#pragma once

#include <chrono>
#include <functional>

#include "platform/foundation/RunLoop.h"

namespace orvalo::testing {

/// Serves the calling thread's run loop until condition() holds; false when it never does.
inline bool serveUntil(const std::function<bool()>& condition) {
    return RunLoop::current()->run(condition, std::chrono::seconds(60));
}

}  // namespace orvalo::testing
