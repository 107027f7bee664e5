#pragma once

namespace orvalo::testing {

/// Starts the toolkit at its first call: on a virtual display, with folders of its own for what the
/// web engine keeps. Where this machine cannot run the engine's sandbox, the engine is told to do
/// without, for the tests alone; the application never does.
void startToolkit();

/// Whether this machine lets bubblewrap, with which the engine makes its sandbox, do so.
bool canSandbox();

}  // namespace orvalo::testing
