#pragma once

#include <complex>
#include <cstddef>
#include <vector>

#include "bench/compressors/Effect.h"

namespace orvalo::bench {

/// The same sine on both channels. frequency: in Hz; level: of its peak in dB.
Stereo sine(double frequency, double level, std::size_t frames);

/// The same uniform noise on both channels, up to the level.
Stereo noise(double level, std::size_t frames);

/// The amplitudes of a spectrum whose signal is periodic in the frames. The number of samples is a
/// power of two; a sine of amplitude 1 gives 1.
std::vector<double> spectrum(const std::vector<float>& samples);

/// The true peak in dB, by Recommendation ITU-R BS.1770-4, Annex 2.
double truePeak(const std::vector<float>& samples);

/// The highest absolute sample of frames [first, end) in dB.
double peak(const std::vector<float>& samples, std::size_t first, std::size_t end);

}  // namespace orvalo::bench
