#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The filter of the side chain: a high-pass and a low-pass of 12 dB per octave each, for two
/// channels. Both are Butterworth filters from R. Bristow-Johnson's "Cookbook formulae for audio EQ
/// biquad filter coefficients" with Q = 1/sqrt(2), in transposed direct form II.
class SideChainFilter {
  public:
    /// At these frequencies a filter is off, not only neutral.
    static constexpr float highPassOff = 20.0F;
    static constexpr float lowPassOff = 20000.0F;

    explicit SideChainFilter(double sampleRate) : sampleRate_(sampleRate) {}

    /// Frequencies in Hz. They apply at once; a filter that is switched on starts from silence.
    void configure(float highPass, float lowPass);
    void reset();

    bool isOn() const { return highPass_.isOn || lowPass_.isOn; }

    /// Filters both channels in place.
    void process(float* left, float* right, std::uint32_t count);

  private:
    struct Biquad {
        struct State {
            double first = 0.0;
            double second = 0.0;
        };

        void process(float* samples, State& state, std::uint32_t count) const;

        bool isOn = false;
        float frequency = 0.0F;
        double b0 = 1.0;
        double b1 = 0.0;
        double b2 = 0.0;
        double a1 = 0.0;
        double a2 = 0.0;
        std::array<State, 2> states{};
    };

    enum class Kind : std::uint8_t { highPass, lowPass };
    void configure(Biquad& biquad, Kind kind, float frequency, float off) const;

    double sampleRate_;
    Biquad highPass_;
    Biquad lowPass_;
};

}  // namespace orvalo::effect
