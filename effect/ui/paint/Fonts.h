#pragma once

namespace orvalo::effect::ui {

/// Has the fonts of the interface looked up and opened, which takes some milliseconds where nobody
/// in the process has written with them before: so that the first picture need not wait for it. The
/// interface's thread.
void openFonts();

}  // namespace orvalo::effect::ui
