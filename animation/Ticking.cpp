#include "animation/Ticking.h"

#include <utility>

namespace orvalo {

std::shared_ptr<Timer> startTicking(float interval, std::function<void()> tick) {
    return Timer::scheduledTimer(static_cast<double>(interval),
                                 [tick = std::move(tick)](const auto& /*timer*/) { tick(); });
}

void stopTicking(std::shared_ptr<Timer>& timer) {
    // Cleared first: invalidate() may destroy the object that holds the pointer.
    if (const auto stopped = std::exchange(timer, nullptr)) {
        stopped->invalidate();
    }
}

}  // namespace orvalo
