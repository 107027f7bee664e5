#pragma once

namespace orvalo::testing {

// The user's hands: what they do comes to the windows as from a mouse and a keyboard.

/// Moves the pointer on the screen.
void movePointer(int x, int y);
/// Presses or lets go of a button: 1 is the left one, 3 the right one.
void pressButton(unsigned button);
void releaseButton(unsigned button);
void click(int x, int y, unsigned button = 1);
/// Strikes the key with that keysym.
void strikeKey(unsigned long keysym);
/// The keycode of a keysym.
unsigned keycode(unsigned long keysym);

/// Sends a window the press of a key that nobody strikes, to whoever made the window.
void sendKey(unsigned long window, unsigned code);

}  // namespace orvalo::testing
