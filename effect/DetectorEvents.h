#pragma once

#include <lv2/atom/atom.h>

#include "effect/dsp/SpectrumBank.h"

namespace orvalo::effect {

/// The object without properties by which the UI asks for the detector's spectrum. For
/// SpectrumBank::watchedSeconds after it, the effect sends DetectorSpectrum objects.
inline constexpr const char* watchDetectorUri = "urn:tessaly:orvalo#WatchDetector";

/// The object that the effect sends to its MIDI output, with one property: the levels of the bands
/// in dB, as a vector of floats.
inline constexpr const char* detectorSpectrumUri = "urn:tessaly:orvalo#DetectorSpectrum";
inline constexpr const char* bandLevelsUri = "urn:tessaly:orvalo#bandLevels";

/// The body of that object's atom.
struct DetectorSpectrum {
    LV2_Atom_Object_Body object;
    LV2_Atom_Property_Body levels;
    LV2_Atom_Vector_Body vector;
    SpectrumBank::Levels values;
};

}  // namespace orvalo::effect
