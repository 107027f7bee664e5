#pragma once

namespace orvalo::testing {

/// Starts the toolkit at its first call, on a virtual display and with temporary folders for the
/// web engine. Turns the engine's sandbox off on machines that cannot run it; only tests do that.
void startToolkit();

/// Whether bubblewrap, which creates the engine's sandbox, works on this machine.
bool canSandbox();

}  // namespace orvalo::testing
