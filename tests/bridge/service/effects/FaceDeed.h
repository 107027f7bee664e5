#pragma once

namespace orvalo::zoo {

/// What the face does at its first turn, by the value of its control "deed".
enum class FaceDeed { none, close, askForSize, badWindow, leave };

}  // namespace orvalo::zoo
