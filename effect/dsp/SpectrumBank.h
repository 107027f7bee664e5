#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace orvalo::effect {

/// The spectrum of a stereo signal in bands of a third of an octave, for display. It costs nothing
/// until it is watched. A band is two state variable filters in a row, which stay exact in single
/// precision at every rate. Above 88.2 kHz it takes means of several samples, for the same cost per
/// second.
class SpectrumBank {
  public:
    static constexpr std::size_t bandCount = 31;
    /// The lowest level in dB.
    static constexpr float lowest = -90.0F;
    /// How long the bank runs after watch().
    static constexpr double watchedSeconds = 2.0;

    /// In dB: 0 for a sine of full scale, of the louder channel.
    using Levels = std::array<float, bandCount>;

    /// The centre of a band in Hz: about 20 Hz to 20 kHz.
    static double frequency(std::size_t band) {
        constexpr double middle = 17.0;
        return 1000.0 * std::exp2((static_cast<double>(band) - middle) / 3.0);
    }

    explicit SpectrumBank(double sampleRate);

    /// Starts the bank, or keeps it running, for watchedSeconds from now on.
    void watch();
    bool isWatched() const { return framesLeft_ != 0; }
    void stop() { framesLeft_ = 0; }

    /// Processes `count` frames of any number. To be called while isWatched().
    void process(const float* left, const float* right, std::uint32_t count);

    /// Gives the levels about 25 times per second while the bank runs; false in between.
    bool takeLevels(Levels& levels);

  private:
    // A whole number of vectors; the last band is silent.
    static constexpr std::size_t lanes = 32;
    struct alignas(64) Lanes : std::array<float, lanes> {};
    struct Filter {
        Lanes first{};
        Lanes second{};
    };
    struct Channel {
        std::array<Filter, 2> filters{};
        Lanes power{};
        float sum = 0.0F;
        std::uint32_t summed = 0;
    };

    void process(Channel& channel, const float* samples, std::uint32_t count) const;
    void filter(Channel& channel, float sample) const;

    // Of the filters; see SpectrumBank().
    Lanes a1_{};
    Lanes a2_{};
    Lanes a3_{};
    Lanes gain_{};
    // Samples of a mean.
    std::uint32_t step_;
    float taken_ = 0.0F;
    std::uint32_t watchedFrames_;
    std::uint32_t period_;
    std::uint32_t framesLeft_ = 0;
    std::uint32_t sinceTaken_ = 0;
    std::array<Channel, 2> channels_{};
};

}  // namespace orvalo::effect
