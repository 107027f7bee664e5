#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The amplitude of two channels, frame by frame: their absolute values, or the square root of
/// their mean square. The mean is exponential; the window is its time constant.
class LevelDetector {
  public:
    explicit LevelDetector(double sampleRate) : sampleRate_(sampleRate) {}

    /// window: in milliseconds, above 0.
    void configure(bool isRms, float window);
    void reset() { means_ = {}; }
    /// Takes the means of another one, which may run at another rate.
    void continueFrom(const LevelDetector& other) { means_ = other.means_; }

    /// Writes the amplitude of the louder channel.
    void linked(const float* left, const float* right, float* amplitude, std::uint32_t count);
    /// Writes the amplitude of each channel.
    void separate(const float* left, const float* right, float* leftAmplitude,
                  float* rightAmplitude, std::uint32_t count);

  private:
    void takeMean(const float* samples, double& mean, float* amplitude, std::uint32_t count) const;

    double sampleRate_;
    bool isRms_ = false;
    float window_ = 0.0F;
    double take_ = 1.0;
    std::array<double, 2> means_{};
};

}  // namespace orvalo::effect
