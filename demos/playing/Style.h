#pragma once

#include <string_view>
#include <vector>

namespace orvalo {

/// The roles in a band; the catalogue assigns instruments to them.
enum class Role { lead, comp, pad, bass };

/// How a layer reads its patterns.
enum class Playing {
    /// X x o: full chord (loud to soft); 1-9: one voice, counted from the lowest and on through the
    /// octave above.
    chords,
    /// R r: root; 3 5 7: chord notes; O o: octave; 4: the fifth below; a: approach to the next
    /// root; w: walking line; x: muted note.
    bassLine,
    /// 1-9: scale degrees from the tonic; a-g: those of the octave below. Ignores the chords.
    ostinato,
    /// X x o: notes (loud to soft) with composed pitches: motifs that repeat and vary, chord notes
    /// on the beat, and an end that leads back to the start.
    melody,
};

/// The material of one player.
struct Layer {
    Role role;
    Playing playing;
    /// One is chosen for the loop (melody: one for each motif).
    std::vector<std::string_view> patterns;
    /// Cells per quarter note; 0: as in the style.
    int cells = 0;
    /// Stretched over the loop; '.' silences the layer.
    std::string_view where = "x";
    int voices = 4;     ///< notes in a chord
    bool open = false;  ///< chords in open position
    int octave = 0;     ///< shift in octaves, limited to the instrument's range
    int level = 100;    ///< percent of the role's amplitude in the mix
    int held = 92;      ///< sounding percent of the written length
    int strum = 0;      ///< ticks from one string to the next
    int swell = 0;      ///< depth of the expression's swell in percent
    int swellBars = 2;  ///< bars from one swell to the next
    int spread = 40;    ///< distance from the middle, 0 to 63, to the role's side
};

/// The line of one drum. X x o f g: hits from accent to ghost note; ?: a hit that is sometimes left
/// out; r: a roll that fills its length.
struct DrumLine {
    int key;  ///< key of the General MIDI drum map
    std::string_view pattern;
};

struct Groove {
    std::vector<DrumLine> lines;
    /// Replaces the lines in every fourth bar and in the last bar; may be empty.
    std::vector<DrumLine> fill;
};

/// Everything about a piece that its catalogue row does not state.
struct Style {
    std::string_view name;
    int cells = 4;    ///< cells of the patterns per quarter note
    int swing = 0;    ///< delay of every second cell, in percent of a cell
    int loose = 6;    ///< largest random deviation from the beat, in ticks
    int reverb = 36;  ///< 0 to 127
    int chorus = 6;   ///< 0 to 127
    /// Stretched over the loop: '1' soft to '9' loud. One is chosen.
    std::vector<std::string_view> dynamics = {"7"};
    /// In the notation of Harmony. One is chosen.
    std::vector<std::string_view> majorProgressions;
    std::vector<std::string_view> minorProgressions;
    /// One is chosen.
    std::vector<Groove> grooves;
    std::vector<Layer> layers;
};

}  // namespace orvalo
