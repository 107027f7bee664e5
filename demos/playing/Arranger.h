#pragma once

#include "demos/catalogue/Piece.h"
#include "demos/score/Score.h"

namespace orvalo {

/// Composes a piece: the same score for the same row, always. Throws std::invalid_argument when the
/// style's progressions cannot be read.
Score arrange(const Piece& piece);

}  // namespace orvalo
