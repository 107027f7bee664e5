#pragma once

namespace orvalo::testing {

/// The innermost window under a point of the screen; 0 when that goes while it is looked for.
unsigned long windowAt(int x, int y);
/// The window that it is in; 0 without one.
unsigned long parentWindowAt(int x, int y);

}  // namespace orvalo::testing
