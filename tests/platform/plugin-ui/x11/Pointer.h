#pragma once

namespace orvalo::testing {

// Sends input to the X server as the user's mouse and keyboard do.

/// Moves the pointer to a point of the screen.
void movePointer(int x, int y);
/// button: 1 is the left one, 2 the middle one, 3 the right one.
void pressButton(unsigned button);
void releaseButton(unsigned button);
void click(int x, int y, unsigned button = 1);
/// Presses and releases the key with that keysym.
void strikeKey(unsigned long keysym);
/// Presses or releases the key of a keysym.
void holdKey(unsigned long keysym, bool down);

/// The keycode of a keysym.
unsigned keycode(unsigned long keysym);

/// Sends the client that created the window a KeyPress of that keycode.
void sendKey(unsigned long window, unsigned code);

/// Sets the property of a UI that sends the keys it does not use.
void tellOfUnusedKeys(unsigned long window);

}  // namespace orvalo::testing
