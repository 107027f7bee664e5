#pragma once

#include <filesystem>

#include "demos/catalogue/Piece.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// The loudness of all pieces in LUFS, low enough for drum solos to reach it.
constexpr double targetLoudness = -20.0;

/// Composes, plays and levels a piece. The loop has exactly piece.frames() frames. Throws
/// std::runtime_error or std::invalid_argument with a reason.
StereoSound compose(const Piece& piece, const std::filesystem::path& soundFont);

}  // namespace orvalo
