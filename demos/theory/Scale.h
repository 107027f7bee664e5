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

/// The mode in words, for example "harmonic minor".
std::string_view nameOf(Mode mode);
/// The pitch class 0 to 11 as a note's name, for example 3 is "Eb".
std::string_view nameOfTonic(int tonic);

/// The notes of a mode above a tonic. Keys are MIDI keys; degree 0 is the tonic from 48 to 59, and
/// degrees go on upwards and downwards through the octaves.
class Scale {
  public:
    /// tonic: 0 (C) to 11 (B).
    Scale(int tonic, Mode mode);

    int tonic() const { return tonic_; }
    /// Notes in an octave.
    int size() const { return static_cast<int>(steps_.size()); }
    int keyOf(int degree) const;
    bool contains(int key) const;
    /// The degree that is nearest to the key, the lower of two as near.
    int degreeNear(int key) const;
    /// The scale of seven notes that chords are built from; a scale of seven notes is its own.
    Scale harmony() const;
    /// True where the third above the tonic is minor.
    bool isMinor() const;

  private:
    int tonic_;
    Mode mode_;
    std::vector<int> steps_;
};

}  // namespace orvalo
