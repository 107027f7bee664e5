#pragma once

namespace orvalo::zoo {

/// What the UI does in its first update, as the effect's control "deed" says. nest: requests a
/// size, runs the main loop until its window gets a message, and closes.
enum class UIDeed { none, close, requestSize, badWindow, leave, nest };

}  // namespace orvalo::zoo
