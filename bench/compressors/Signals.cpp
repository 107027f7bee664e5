#include "bench/compressors/Signals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace orvalo::bench {

namespace {

constexpr double smallest = 1e-12;

double decibels(double amplitude) {
    return 20.0 * std::log10(std::max(amplitude, smallest));
}

/// The transform of J. W. Cooley and J. W. Tukey, in place, by halves.
void transform(std::vector<std::complex<double>>& values) {
    const std::size_t count = values.size();
    for (std::size_t i = 1, j = 0; i < count; ++i) {
        std::size_t bit = count >> 1;
        for (; (j & bit) != 0; bit >>= 1) {
            j ^= bit;
        }
        j |= bit;
        if (i < j) {
            std::swap(values[i], values[j]);
        }
    }
    for (std::size_t length = 2; length <= count; length <<= 1) {
        for (std::size_t k = 0; k < length / 2; ++k) {
            const auto turn = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(k) /
                                                  static_cast<double>(length));
            for (std::size_t i = k; i < count; i += length) {
                const auto other = values[i + length / 2] * turn;
                values[i + length / 2] = values[i] - other;
                values[i] += other;
            }
        }
    }
}

}  // namespace

Stereo sine(double frequency, double level, std::size_t frames) {
    Stereo signal;
    const double amplitude = std::pow(10.0, level / 20.0);
    for (std::size_t i = 0; i < frames; ++i) {
        const double turns = frequency * static_cast<double>(i) / Effect::rate;
        signal.left.push_back(
            static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * turns)));
    }
    signal.right = signal.left;
    return signal;
}

Stereo noise(double level, std::size_t frames) {
    Stereo signal;
    std::mt19937 random(1);
    const double amplitude = std::pow(10.0, level / 20.0);
    for (std::size_t i = 0; i < frames; ++i) {
        const double unit = static_cast<double>(random()) / 2147483648.0 - 1.0;
        signal.left.push_back(static_cast<float>(amplitude * unit));
    }
    signal.right = signal.left;
    return signal;
}

std::vector<double> spectrum(const std::vector<float>& samples) {
    std::vector<std::complex<double>> values(samples.begin(), samples.end());
    transform(values);
    std::vector<double> amplitudes;
    for (std::size_t i = 0; i < samples.size() / 2; ++i) {
        amplitudes.push_back(2.0 * std::abs(values[i]) / static_cast<double>(samples.size()));
    }
    return amplitudes;
}

double truePeak(const std::vector<float>& samples) {
    // The first two phases; the other two are these reversed.
    constexpr std::array<std::array<double, 12>, 2> halves{
        {{0.0017089843750, 0.0109863281250, -0.0196533203125, 0.0332031250000, -0.0594482421875,
          0.1373291015625, 0.9721679687500, -0.1022949218750, 0.0476074218750, -0.0266113281250,
          0.0148925781250, -0.0083007812500},
         {-0.0291748046875, 0.0292968750000, -0.0517578125000, 0.0891113281250, -0.1665039062500,
          0.4650878906250, 0.7797851562500, -0.2003173828125, 0.1015625000000, -0.0582275390625,
          0.0330810546875, -0.0189208984375}}};
    double highest = 0.0;
    for (std::size_t i = 11; i < samples.size(); ++i) {
        for (const auto& half : halves) {
            double forward = 0.0;
            double backward = 0.0;
            for (std::size_t tap = 0; tap < half.size(); ++tap) {
                forward += half.at(tap) * static_cast<double>(samples[i - tap]);
                backward += half.at(half.size() - 1 - tap) * static_cast<double>(samples[i - tap]);
            }
            highest = std::max({highest, std::abs(forward), std::abs(backward)});
        }
    }
    return decibels(highest);
}

double peak(const std::vector<float>& samples, std::size_t first, std::size_t end) {
    double highest = 0.0;
    for (std::size_t i = first; i < std::min(end, samples.size()); ++i) {
        highest = std::max(highest, std::abs(static_cast<double>(samples[i])));
    }
    return decibels(highest);
}

}  // namespace orvalo::bench
