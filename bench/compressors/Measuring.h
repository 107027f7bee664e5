#pragma once

#include <memory>
#include <vector>

#include "bench/compressors/Contenders.h"
#include "bench/compressors/Effect.h"

namespace orvalo::bench {

/// One contender's measurements. Each but cost() takes a new instance.
class Measuring {
  public:
    Measuring(const EffectWorld& world, const LilvPlugin* plugin, Contender contender);

    const Contender& contender() const { return contender_; }

    /// Output of a settled 1 kHz tone in dB.
    double curve(double level) const;

    /// The gain in dB, every `stepSeconds`, when a tone of 6 kHz changes its level between two
    /// levels, from a tenth of a second before the change, for two seconds.
    std::vector<double> gains(double from, double to) const;
    static constexpr double stepSeconds = 4.0 / Effect::rate;

    /// Milliseconds in which 63 % of that change of the gain in dB are done.
    double time(double from, double to) const;

    /// Total harmonic distortion in per cent, of a tone of 0 dB.
    double distortion(double frequency, bool isFast) const;

    /// The amplitudes of a settled tone of about 5 kHz and 0 dB at the fastest times, in dB below
    /// it: the highest in each of `count` equal bands up to half the rate.
    std::vector<double> spectrumAtSpeed(std::size_t count) const;

    /// The highest component of it that is no harmonic below half the rate, in dB.
    double alias() const;

    /// How far the true peaks of bursts of noise of this level exceed -6 dB.
    double overshoot(double level) const;

    /// The difference of the gains in dB, of a channel that is `difference` dB quieter than the
    /// other one and of that one, which has 0 dB.
    double linkError(double difference) const;

    /// The processor's nanoseconds per frame for a second of noise, at the effect's defaults or at
    /// these settings.
    double cost(bool isDefault);

    std::uint32_t latency() const;

  private:
    /// The spectrum of a settled tone near the frequency, and the number of the tone in it, which
    /// is a prime: then no folded component falls on a harmonic.
    std::pair<std::size_t, std::vector<double>> settledSpectrum(double frequency,
                                                                bool isFast) const;

    const EffectWorld& world_;
    const LilvPlugin* plugin_;
    Contender contender_;
    std::unique_ptr<Effect> default_;
    std::unique_ptr<Effect> set_;
};

}  // namespace orvalo::bench
