#pragma once

#include <cstddef>
#include <string>

#include "platform/plugin-ui/x11/X11Geometry.h"
#include "tests/testing/WaitUntil.h"

using Display = struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo::testing {

/// The program's virtual display, which the first call makes, and the tests' own connection to it.
Display* screen();

/// Serves the main run loop for at least that many of its turns.
void runFor(int turns);

/// A window's rectangle on the screen; empty when it cannot be seen or is gone.
X11Rect rectangleOf(unsigned long window);
/// A pixel of the screen: 0xRRGGBB.
unsigned pixelAt(int x, int y);
/// The number of colours at a grid of points in a part of the screen.
std::size_t countColors(const X11Rect& area);

/// Runs the main run loop until that holds; false after many seconds.
bool comesTo(unsigned long window, const X11Rect& rectangle);
bool isPainted(int x, int y, unsigned color);

/// The window that has the keyboard.
unsigned long keyboardFocus();

}  // namespace orvalo::testing
