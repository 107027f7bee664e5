#pragma once

namespace orvalo::zoo {

/// The UI's action in its first update, chosen by the effect's control "deed". nest: requests a
/// size, runs the main loop until its window gets a message, and closes.
enum class UIDeed { none, close, requestSize, badWindow, leave, nest };

}  // namespace orvalo::zoo
