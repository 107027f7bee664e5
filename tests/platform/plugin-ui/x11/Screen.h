#pragma once

#include <cstddef>

#include "platform/plugin-ui/x11/X11Geometry.h"
#include "tests/testing/WaitUntil.h"

using Display = struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo::testing {

/// The tests' connection to the program's virtual display, which the first call starts. That call
/// also moves the caches of effects from the user's folder to a temporary one.
Display* screen();

/// Runs the main run loop for that many calls of a 5 ms timer.
void runFor(int turns);

/// A window's rectangle on the screen; empty when it is unmapped or destroyed.
X11Rect rectangleOf(unsigned long window);
/// A pixel of the screen, 0xRRGGBB.
unsigned pixelAt(int x, int y);
/// The number of colours in a part of the screen, at every seventh pixel each way.
std::size_t countColors(const X11Rect& area);

// Wait until the window has that rectangle, or the pixel that colour; false after a minute.
bool waitForRectangle(unsigned long window, const X11Rect& rectangle);
bool waitForColor(int x, int y, unsigned color);

/// The focus window.
unsigned long keyboardFocus();

/// The innermost window under a point of the screen; 0 when it is destroyed during the search.
unsigned long windowAt(int x, int y);
/// The parent of windowAt(); 0 without one.
unsigned long parentWindowAt(int x, int y);

}  // namespace orvalo::testing
