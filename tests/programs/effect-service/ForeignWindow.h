#pragma once

namespace orvalo::testing {

// Apart from the tests, because macros of Xlib.h have names of GoogleTest.

/// Whether a window of another process exists, mapped or not.
bool isThere(unsigned long window);
/// Sends a ClientMessage to the client that created the window.
void sendMessage(unsigned long window);

}  // namespace orvalo::testing
