#pragma once

namespace orvalo::testing {

/// Starts a window manager on the virtual display, once; it ends with the program.
void startWindowManager();

}  // namespace orvalo::testing
