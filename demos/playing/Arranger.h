#pragma once

#include "demos/catalogue/Piece.h"
#include "demos/playing/Score.h"

namespace orvalo {

/// Composes a piece. The same row always gives the same score. Throws std::invalid_argument when a
/// progression of the style is invalid.
Score arrange(const Piece& piece);

}  // namespace orvalo
