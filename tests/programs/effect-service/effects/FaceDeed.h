#pragma once

namespace orvalo::zoo {

/// What the face does at its first turn, by the value of its control "deed".
/// nest: it asks for an extent, runs the main loop until its window gets a message, and closes.
enum class FaceDeed { none, close, askForSize, badWindow, leave, nest };

}  // namespace orvalo::zoo
