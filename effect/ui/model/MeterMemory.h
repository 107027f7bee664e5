#pragma once

#include <optional>

#include "effect/ui/model/History.h"

namespace orvalo::effect::ui {

/// Tells by the effect's run count whether the effect runs.
class RunWatch {
  public:
    /// Longer than the pause between two updates of a hidden UI.
    static constexpr double patienceSeconds = 0.5;

    /// Takes the count at `now`, in seconds. The first call only sets the initial count.
    void update(float count, double now) {
        if (count_ && *count_ != count) {
            changed_ = now;
        }
        count_ = count;
    }

    bool isRunning(double now) const { return changed_ && now - *changed_ < patienceSeconds; }

  private:
    std::optional<float> count_;
    std::optional<double> changed_;
};

/// The levels `seconds` later without the effect: they fall to silence.
Levels fallen(const Levels& levels, double seconds);

/// What the meters keep of past levels: the peaks of the last seconds, and until reset() the
/// highest true peak and whether input and output exceeded full scale.
class MeterMemory {
  public:
    static constexpr double holdSeconds = 2.0;

    /// Takes the levels at `now`. truePeak: in dB. Returns whether anything has changed.
    bool update(const Levels& levels, float truePeak, double now);
    /// Forgets the highest true peak and the clipping.
    void reset();

    float inputPeak() const { return input_.level; }
    float outputPeak() const { return output_.level; }
    float truePeak() const { return truePeak_; }
    bool hasInputClipped() const { return inputClipped_; }
    bool hasOutputClipped() const { return outputClipped_; }

  private:
    struct Peak {
        float level = Levels::lowest;
        double since = 0.0;

        bool update(float now, double time);
    };

    Peak input_;
    Peak output_;
    float truePeak_ = Levels::lowest;
    bool inputClipped_ = false;
    bool outputClipped_ = false;
};

}  // namespace orvalo::effect::ui
