#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "demos/catalogue/Instrument.h"
#include "demos/styles/Styles.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// Frames a second of all pieces.
constexpr int pieceRate = 48000;

/// Who plays, by role; none leaves a role's layers out.
struct Band {
    Instrument lead;
    Instrument comp;
    Instrument pad;
    Instrument bass;
    Kit kit;
};

/// A row of the catalogue: everything that tells one loop from another.
struct Piece {
    std::string_view title;
    StyleId style;
    int tonic;  ///< pitch class 0 (C) to 11 (B)
    Mode mode;
    int tempo;  ///< quarter notes a minute
    Metre metre;
    int bars;
    Band band;
    std::uint32_t seed;

    /// Length of the loop, rounded to the nearest frame.
    std::int64_t frames() const;
    /// The instruments in words, apart by commas.
    std::string ensemble() const;
};

/// The catalogue; the piece at index n is the file n + 1.
std::span<const Piece> catalogue();

}  // namespace orvalo
