#pragma once

#include <functional>
#include <memory>
#include <type_traits>

#include "platform/foundation/Timer.h"

namespace orvalo {

/// Starts a repeating timer on the calling thread's run loop. interval: seconds. tick: called on
/// that thread at every firing; destroyed when the timer is invalidated.
std::shared_ptr<Timer> startTicking(float interval, std::function<void()> tick);

/// Invalidates the timer, if any, and clears the pointer. Call it on the thread that started the
/// timer. Destroys what only the timer kept alive, possibly the owner of the pointer.
void stopTicking(std::shared_ptr<Timer>& timer);

/// Calls a copy of the callback, if there is one: the callback may replace or clear itself, and
/// destroy the object that it belongs to.
template <typename... Parameters>
void call(const std::function<void(Parameters...)>& callback,
          std::type_identity_t<Parameters>... arguments) {
    if (callback) {
        const auto running = callback;
        running(arguments...);
    }
}

}  // namespace orvalo
