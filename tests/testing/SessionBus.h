#pragma once

namespace orvalo::testing {

/// The first call starts a session bus, on which programs find the accessibility bus, for this
/// process and those that it starts. It ends with this process.
void startSessionBus();

}  // namespace orvalo::testing
