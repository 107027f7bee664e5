#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/foundation/Timer.h"

namespace orvalo {

/// Starts a repeating timer on the calling thread's run loop. interval: seconds. tick: called on
/// that thread at every firing; destroyed when the timer is invalidated.
std::shared_ptr<Timer> startTicking(float interval, std::function<void()> tick);

/// Invalidates the timer, if any, and clears the pointer. Call it on the thread that started the
/// timer. Destroys what only the timer kept alive, possibly the owner of the pointer.
void stopTicking(std::shared_ptr<Timer>& timer);

/// A callback whose copies are one and the same closure, with one state.
template <typename... Parameters>
class SharedCallback {
  public:
    explicit SharedCallback(std::function<void(Parameters...)> closure)
        : closure_(std::make_shared<std::function<void(Parameters...)>>(std::move(closure))) {}

    void operator()(Parameters... arguments) const { (*closure_)(arguments...); }

  private:
    std::shared_ptr<std::function<void(Parameters...)>> closure_;
};

/// Calls the callback, if there is one. It keeps its own state, also while it replaces or clears
/// itself, calls itself or destroys the object that it belongs to. Its first call wraps it, so
/// later copies of it share that state.
template <typename... Parameters>
void call(std::function<void(Parameters...)>& callback,
          std::type_identity_t<Parameters>... arguments) {
    using Shared = SharedCallback<Parameters...>;
    if (!callback) {
        return;
    }
    if (callback.template target<Shared>() == nullptr) {
        callback = Shared(std::move(callback));
    }
    const Shared running = *callback.template target<Shared>();
    running(arguments...);
}

}  // namespace orvalo
