#pragma once

#include <string_view>
#include <vector>

namespace orvalo {

enum class Mode {
    major,
    minor,
    dorian,
    phrygian,
    lydian,
    mixolydian,
    harmonicMinor,
    phrygianDominant,
    doubleHarmonic,
    majorPentatonic,
    minorPentatonic,
    blues,
    pelog,
    hirajoshi,
};

/// The name of the mode, for example "harmonic minor".
std::string_view nameOf(Mode mode);
/// The name of a pitch class 0 to 11; 3 is "Eb".
std::string_view nameOfTonic(int tonic);

/// The notes of a mode above a tonic. Keys are MIDI keys. Degree 0 is the tonic between keys 48 and
/// 59; degrees continue in both directions through the octaves.
class Scale {
  public:
    /// tonic: 0 (C) to 11 (B).
    Scale(int tonic, Mode mode);

    int tonic() const { return tonic_; }
    /// Notes per octave.
    int size() const { return static_cast<int>(steps_.size()); }
    int keyOf(int degree) const;
    bool contains(int key) const;
    /// The degree nearest to the key; the lower one of two at the same distance.
    int degreeNear(int key) const;
    /// The scale of seven notes from which chords are built; a scale of seven notes gives itself.
    Scale harmony() const;
    /// Whether the third above the tonic is minor.
    bool isMinor() const;

  private:
    int tonic_;
    Mode mode_;
    std::vector<int> steps_;
};

}  // namespace orvalo
