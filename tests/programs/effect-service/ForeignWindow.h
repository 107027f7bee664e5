#pragma once

namespace orvalo::testing {

/// Whether a window of another process exists, mapped or not.
bool isThere(unsigned long window);
/// Sends a ClientMessage to the client that created the window.
void sendMessage(unsigned long window);

}  // namespace orvalo::testing
