#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "demos/catalogue/Instrument.h"
#include "demos/playing/Style.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// Sample rate of all pieces, in frames per second.
constexpr int pieceRate = 48000;

/// The instrument of each role; with none, the role's layers are left out.
struct Band {
    Instrument lead;
    Instrument comp;
    Instrument pad;
    Instrument bass;
    Kit kit;
};

/// A row of the catalogue, which defines one loop.
struct Piece {
    std::string_view title;
    Style (*style)();
    int tonic;  ///< pitch class 0 (C) to 11 (B)
    Mode mode;
    int tempo;  ///< quarter notes per minute
    Metre metre;
    int bars;
    Band band;
    std::uint32_t seed;

    /// Length of the loop, rounded to the nearest frame.
    std::int64_t frames() const;
    /// The names of the instruments, separated by commas.
    std::string ensemble() const;
};

/// The catalogue; the piece at index n becomes file n + 1.
std::span<const Piece> catalogue();

}  // namespace orvalo
