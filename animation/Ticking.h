#pragma once

#include <functional>
#include <memory>

#include "platform/foundation/Timer.h"

namespace orvalo {

/// Starts a repeating timer on the calling thread's run loop and returns it. interval: seconds,
/// widened to double precision. tick: called on that thread at every firing; it lives, with
/// everything that it holds, until the timer is invalidated.
std::shared_ptr<Timer> startTicking(float interval, std::function<void()> tick);

/// Invalidates the timer and clears it; an absent one is left alone. On the thread that started it.
/// What the timer alone kept alive, its owner included, is gone afterwards.
void stopTicking(std::shared_ptr<Timer>& timer);

}  // namespace orvalo
