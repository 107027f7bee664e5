#pragma once

#include <functional>
#include <type_traits>

namespace orvalo {

/// Calls the callback if there is one. A copy of it is what runs, so that it may replace or clear
/// itself, and destroy the object it belongs to.
template <typename... Parameters>
void call(const std::function<void(Parameters...)>& callback,
          std::type_identity_t<Parameters>... arguments) {
    if (callback) {
        const auto running = callback;
        running(arguments...);
    }
}

}  // namespace orvalo
