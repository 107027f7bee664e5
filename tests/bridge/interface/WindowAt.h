#pragma once

namespace orvalo::testing {

/// The innermost window under a point of the screen.
unsigned long windowAt(int x, int y);
/// The window that it is in.
unsigned long parentWindowAt(int x, int y);

}  // namespace orvalo::testing
