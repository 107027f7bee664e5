#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace orvalo::effect {

/// A beat on a grid of note values: it starts on each grid point and lasts for a share of the
/// grid's step. The grid counts from the start of the song in the host's time. Without host time it
/// runs at its own tempo, from the frame at which the generator is switched on.
class BeatGenerator {
  public:
    struct Settings {
        bool isOn = false;
        /// The step: note value times three (0 for 1/1 to 4 for 1/16), plus 0 for dotted, 1 for
        /// straight, 2 for triplet.
        std::uint8_t division = 7;
        /// How much later the beats start, as a share of the step; negative for earlier.
        double offset = 0.0;
        /// Length of a beat as a share of the step, above 0 and below 1.
        double length = 0.25;
        /// The own tempo in quarter notes per minute.
        double tempo = 120.0;
        bool operator==(const Settings&) const = default;
    };

    static constexpr std::uint32_t never = std::numeric_limits<std::uint32_t>::max();

    /// A step in quarter notes. division: as in Settings.
    static constexpr double stepOf(std::uint8_t division) {
        const double straight = 4.0 / static_cast<double>(1 << division / 3);
        switch (division % 3) {
            case 0:
                return 1.5 * straight;
            case 1:
                return straight;
            default:
                return straight * 2.0 / 3.0;
        }
    }

    explicit BeatGenerator(double sampleRate) : sampleRate_(sampleRate) {}

    void configure(const Settings& settings);

    /// Forgets the host's time, and starts anew at the own tempo.
    void reset();

    /// The host's time at the next frame. quarters: position in quarter notes; absent if the host
    /// does not tell a jump. quartersPerSecond: 0 or less while stopped; then there are no beats.
    void setHostTime(std::optional<double> quarters, double quartersPerSecond);

    /// Whether the next frame lies in a beat.
    bool isDown() const { return isDown_; }
    /// The number of frames for which isDown() stays as it is: at least 1.
    std::uint32_t framesToEdge() const;
    /// frames: at most framesToEdge().
    void advance(std::uint32_t frames);

  private:
    double positionNow() const { return anchor_ + static_cast<double>(frame_) * perFrame_; }
    bool isRunning() const { return settings_.isOn && perFrame_ > 0.0; }
    void anchorAt(double quarters, double perFrame);
    /// Finds the next grid point from here on.
    void findNext();
    /// Starts and ends the beats whose edges are at the next frame.
    void takeEdges();
    /// Frames from the next frame to the next edge; 0 if it is due.
    std::uint64_t distance() const;
    double ownPerFrame() const { return settings_.tempo / (60.0 * sampleRate_); }

    double sampleRate_;
    Settings settings_;
    double step_ = 1.0;
    bool hasHostTime_ = false;
    // The position is counted from an anchor, so that rounding errors do not add up.
    double anchor_ = 0.0;
    std::uint64_t frame_ = 0;
    double perFrame_ = 0.0;
    std::int64_t next_ = 0;
    bool isDown_ = false;
};

}  // namespace orvalo::effect
