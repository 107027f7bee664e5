#pragma once

namespace orvalo::testing {

/// The first call starts a session bus, on which programs find the accessibility bus, for this
/// process and those that it starts. It ends with this process. Needs DISPLAY.
void startSessionBus();

}  // namespace orvalo::testing
