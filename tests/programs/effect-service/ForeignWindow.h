#pragma once

namespace orvalo::testing {

// A window of another process.

/// Whether it exists, on screen or not.
bool isThere(unsigned long window);
/// Sends a message to whoever made it.
void sendMessage(unsigned long window);

}  // namespace orvalo::testing
