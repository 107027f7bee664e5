#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// The amplitude of two channels, frame by frame: their absolute values, or the square root of
/// their mean square. The mean is exponential; the window is its time constant.
///
/// With exact crests, a frame that is higher than its neighbours gets the crest of the parabola
/// through the three, and the absolute values come one frame later. Otherwise a crest between two
/// frames reads lower, by an amount that changes from crest to crest, which folds into the signal.
class LevelDetector {
  public:
    enum class Crests { ofFrames, exact };

    explicit LevelDetector(double sampleRate, Crests crests = Crests::ofFrames)
        : sampleRate_(sampleRate), crests_(crests) {}

    /// window: in milliseconds, above 0.
    void configure(bool isRms, float window);
    void reset() {
        means_ = {};
        last_ = {};
    }
    /// Takes the means of another one, which may run at another rate.
    void continueFrom(const LevelDetector& other) { means_ = other.means_; }

    /// Writes the amplitude of the louder channel.
    void linked(const float* left, const float* right, float* amplitude, std::uint32_t count);
    /// Writes the amplitude of each channel.
    void separate(const float* left, const float* right, float* leftAmplitude,
                  float* rightAmplitude, std::uint32_t count);

  private:
    /// The two absolute values before the first one of a chunk.
    using Last = std::array<float, 2>;

    static void raiseCrests(float* amplitude, Last& last, std::uint32_t count);
    void takeMean(const float* samples, double& mean, float* amplitude, std::uint32_t count) const;

    double sampleRate_;
    Crests crests_;
    bool isRms_ = false;
    float window_ = 0.0F;
    double take_ = 1.0;
    std::array<double, 2> means_{};
    std::array<Last, 2> last_{};
};

}  // namespace orvalo::effect
