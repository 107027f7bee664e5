#pragma once

#include <filesystem>

#include "demos/catalogue/Piece.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Loudness that all pieces are brought to, in LUFS: low enough that drums alone reach it.
constexpr double targetLoudness = -20.0;

/// Composes, plays and levels a piece: its loop, sample-exactly as long as the piece. Throws
/// std::runtime_error or std::invalid_argument with a reason.
StereoSound compose(const Piece& piece, const std::filesystem::path& soundFont);

}  // namespace orvalo
