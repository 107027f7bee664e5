#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// Runs the application until its window is closed, and returns its status. Creates the delegate (a
/// registered class), loads the bundle's main layout and shows its first screen.
/// principalClassName: must be absent. The bundle's identifier makes the application unique: a
/// second start presents the running window and returns. An unknown class, or a missing or damaged
/// layout, is a fatal error.
int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      const std::string& delegateClassName);

}  // namespace orvalo
