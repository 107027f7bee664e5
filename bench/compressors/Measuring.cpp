#include "bench/compressors/Measuring.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "bench/compressors/Signals.h"

namespace orvalo::bench {

namespace {

constexpr auto second = static_cast<std::size_t>(Effect::rate);
/// Half a period of a tone of 6 kHz.
constexpr std::size_t step = 4;
constexpr double quietest = 1e-12;

Stereo join(Stereo first, const Stereo& next) {
    first.left.insert(first.left.end(), next.left.begin(), next.left.end());
    first.right = first.left;
    return first;
}

/// The processor's time of this thread: other work on the machine is left out.
double threadNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e9 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec);
}

bool isPrime(std::size_t number) {
    for (std::size_t i = 2; i * i <= number; ++i) {
        if (number % i == 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

Measuring::Measuring(const EffectWorld& world, const LilvPlugin* plugin, Contender contender)
    : world_(world), plugin_(plugin), contender_(std::move(contender)) {}

double Measuring::curve(double level) const {
    Effect effect(world_, plugin_, contender_.normal);
    const auto output = effect.process(sine(1000.0, level, 4 * second));
    return peak(output.left, 3 * second, 4 * second - Effect::blockFrames);
}

std::vector<double> Measuring::gains(double from, double to) const {
    Effect effect(world_, plugin_, contender_.normal);
    const auto input = join(sine(6000.0, from, 3 * second), sine(6000.0, to, 3 * second));
    const auto output = effect.process(input);
    const std::size_t change = 3 * second + effect.latency();
    std::vector<double> gains;
    for (std::size_t i = change - second / 10; i < change + 2 * second; i += step) {
        gains.push_back(peak(output.left, i, i + step) - (i < change ? from : to));
    }
    return gains;
}

double Measuring::time(double from, double to) const {
    const auto all = gains(from, to);
    const auto change = static_cast<std::size_t>(std::lround(0.1 / stepSeconds));
    const double first = all.front();
    const double aim = first + (1.0 - std::exp(-1.0)) * (all.back() - first);
    for (std::size_t i = change; i < all.size(); ++i) {
        if ((all[i] - aim) * (all.back() - first) >= 0.0) {
            return static_cast<double>(i - change) * stepSeconds * 1000.0;
        }
    }
    return std::nan("");
}

double Measuring::distortion(double frequency, bool isFast) const {
    const auto [bin, amplitudes] = settledSpectrum(frequency, isFast);
    double power = 0.0;
    for (std::size_t i = 2 * bin; i < amplitudes.size(); i += bin) {
        power += amplitudes[i] * amplitudes[i];
    }
    return 100.0 * std::sqrt(power) / amplitudes[bin];
}

std::vector<double> Measuring::spectrumAtSpeed(std::size_t count) const {
    const auto [bin, amplitudes] = settledSpectrum(5000.0, true);
    std::vector<double> highest(count, quietest);
    for (std::size_t i = 1; i < amplitudes.size(); ++i) {
        double& band = highest[i * count / amplitudes.size()];
        band = std::max(band, amplitudes[i] / amplitudes[bin]);
    }
    for (double& band : highest) {
        band = 20.0 * std::log10(band);
    }
    return highest;
}

double Measuring::alias() const {
    const auto [bin, amplitudes] = settledSpectrum(5000.0, true);
    double highest = quietest;
    for (std::size_t i = 1; i < amplitudes.size(); ++i) {
        highest = i % bin == 0 ? highest : std::max(highest, amplitudes[i]);
    }
    return 20.0 * std::log10(highest / amplitudes[bin]);
}

double Measuring::overshoot(double level) const {
    Effect effect(world_, plugin_, joined(contender_.normal, contender_.ceiling));
    Stereo input = noise(level, 4 * second);
    for (std::size_t i = 0; i < input.left.size(); ++i) {
        if (i / 4800 % 2 == 0) {
            input.left[i] = input.right[i] = 0.0F;
        }
    }
    const auto output = effect.process(input);
    return truePeak(output.left) + 6.0;
}

double Measuring::linkError(double difference) const {
    Effect effect(world_, plugin_, contender_.normal);
    Stereo input = sine(1000.0, 0.0, 3 * second);
    const auto factor = static_cast<float>(std::pow(10.0, -difference / 20.0));
    for (float& sample : input.right) {
        sample *= factor;
    }
    const auto output = effect.process(input);
    const auto level = [](const std::vector<float>& samples) {
        return peak(samples, 2 * second, 3 * second - Effect::blockFrames);
    };
    return level(output.right) + difference - level(output.left);
}

double Measuring::cost(bool isDefault) {
    auto& effect = isDefault ? default_ : set_;
    if (effect == nullptr) {
        effect =
            std::make_unique<Effect>(world_, plugin_, isDefault ? Settings{} : contender_.normal);
    }
    static const Stereo input = noise(-6.0, second);
    const double start = threadNanoseconds();
    effect->process(input);
    return (threadNanoseconds() - start) / static_cast<double>(second);
}

std::uint32_t Measuring::latency() const {
    Effect effect(world_, plugin_, contender_.normal);
    effect.process(noise(-6.0, Effect::blockFrames));
    return effect.latency();
}

std::pair<std::size_t, std::vector<double>> Measuring::settledSpectrum(double frequency,
                                                                       bool isFast) const {
    constexpr std::size_t frames = 65536;
    auto bin = static_cast<std::size_t>(frequency / Effect::rate * frames);
    while (!isPrime(bin)) {
        ++bin;
    }
    Effect effect(world_, plugin_,
                  isFast ? joined(contender_.normal, contender_.fast) : contender_.normal);
    const double exact = static_cast<double>(bin) * Effect::rate / frames;
    const auto output = effect.process(sine(exact, 0.0, 5 * frames));
    return {bin, spectrum({output.left.end() - frames, output.left.end()})};
}

}  // namespace orvalo::bench
