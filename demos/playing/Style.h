#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Metre.h"

namespace orvalo {

/// The places in a band; a catalogue row says which instrument takes them.
enum class Role { lead, comp, pad, bass };

/// How a layer reads its patterns.
enum class Playing {
    /// X x o full chord (loud to soft), 1-9 one voice of it from below, going on in the octave
    /// above.
    chords,
    /// R r root, 3 5 7 chord notes, O o octave, 4 the fifth below, a step to the next root, w walks
    /// on,
    /// x a muted note.
    bassLine,
    /// 1-9 degrees of the scale from the tonic, a-g those of the octave below; the chords are
    /// ignored.
    ostinato,
    /// X x o notes (loud to soft) whose pitches are composed: motifs that repeat and vary, chord
    /// notes
    /// on the beat, and an end that leads back to the beginning.
    melody,
};

/// One player's material.
struct Layer {
    Role role;
    Playing playing;
    /// One of them is drawn for the loop (melody: one for each bar of each motif).
    std::vector<std::string_view> patterns;
    /// Cells of the patterns in a quarter note; 0 takes the style's.
    int cells = 0;
    /// Stretched over the loop: '.' where the layer is silent.
    std::string_view where = "x";
    int voices = 4;     ///< notes in a chord
    bool open = false;  ///< chords in open position
    int octave = 0;     ///< shift in octaves, kept within the instrument's range
    int level = 100;    ///< percent of the amplitude that the role has in the mix
    int held = 92;      ///< percent of the written length that sounds
    int strum = 0;      ///< ticks from one string to the next
    int swell = 0;      ///< percent of depth by which the expression swells
    int swellBars = 2;  ///< bars from one swell to the next
    int spread = 40;    ///< how far from the middle, 0 to 63, to the role's side
};

/// One drum's line. X x o g f hits from accent to ghost note, ? one that may be left out, r a roll
/// that fills the cell.
struct DrumLine {
    int key;  ///< key of the General MIDI drum map
    std::string_view pattern;
};

struct Groove {
    std::vector<DrumLine> lines;
    /// Takes the place of the lines in the last bar of every four and of the loop; may be empty.
    std::vector<DrumLine> fill;
};

/// All that a piece's row does not say itself.
struct Style {
    std::string_view name;
    int cells = 4;    ///< cells of the patterns in a quarter note
    int swing = 0;    ///< percent by which every second cell comes later
    int loose = 6;    ///< ticks by which players miss the beat at most
    int reverb = 36;  ///< 0 to 127
    int chorus = 6;   ///< 0 to 127
    /// Stretched over the loop: '1' soft to '9' loud. One is drawn.
    std::vector<std::string_view> dynamics = {"7"};
    /// Read as Harmony reads them. One is drawn.
    std::vector<std::string_view> majorProgressions;
    std::vector<std::string_view> minorProgressions;
    /// One is drawn.
    std::vector<Groove> grooves;
    std::vector<Layer> layers;
};

}  // namespace orvalo
