#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

namespace {

constinit thread_local int depth = 0;

}  // namespace

RealTimeScope::RealTimeScope() noexcept {
    ++depth;
}

RealTimeScope::~RealTimeScope() {
    --depth;
}

bool RealTimeScope::isActive() noexcept {
    return depth > 0;
}

}  // namespace orvalo
