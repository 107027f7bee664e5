#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// Runs the application until its window is closed, and returns its status: makes the application
/// (principalClassName: absent, the platform's own class) and its delegate (a registered class),
/// loads the main interface layout that the bundle names, and shows its first screen. The bundle's
/// identifier makes the application unique: a second start presents the running window and returns.
/// An unknown class, or a layout that is missing or damaged, is a fatal error.
int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      const std::string& delegateClassName);

}  // namespace orvalo
