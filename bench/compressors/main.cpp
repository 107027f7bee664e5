// Measures compressors on the LV2 path in the same way, and prints one table.

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "bench/compressors/Effect.h"
#include "bench/compressors/Signals.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo::bench;

constexpr auto second = static_cast<std::size_t>(Effect::rate);

/// A contender, and its controls for the settings of the measurements.
struct Contender {
    const char* name;
    const char* uri;
    /// Threshold -20 dB, ratio 4:1, hard knee, attack 10 ms, release 120 ms, no make-up; as near as
    /// the controls allow.
    Settings normal;
    /// What differs for the fastest times: attack 0.1 ms, release 45 ms.
    Settings fast;
    /// The lowest peaks that it can keep below -6 dB.
    Settings ceiling;
};

Settings joined(Settings settings, const Settings& changes) {
    for (const auto& [symbol, value] : changes) {
        settings[symbol] = value;
    }
    return settings;
}

std::vector<Contender> contenders() {
    const std::string orvalo = "urn:tessaly:orvalo";
    const Settings ours{{"threshold", -20.0F}, {"ratio", 4.0F},     {"knee", 0.0F},
                        {"attack", 10.0F},     {"release", 120.0F}, {"makeup", 0.0F}};
    const Settings oursFast{{"attack", 0.1F}, {"release", 45.0F}};
    const Settings lsp{{"al", 0.1F},   {"cr", 4.0F},  {"kn", 1.0F}, {"at", 10.0F},
                       {"rt", 120.0F}, {"scm", 0.0F}, {"scr", 0.0F}};
    return {
        {"Orvalo",
         "urn:tessaly:orvalo",
         ours,
         oursFast,
         {{"threshold", -6.0F}, {"ratio", 20.0F}, {"attack", 0.1F}, {"release", 5.0F}}},
        {"Orvalo, all new on",
         "urn:tessaly:orvalo",
         joined(ours, {{"adaptive", 1.0F},
                       {"oversampling", 2.0F},
                       {"look_ahead", 1.0F},
                       {"sc_highpass", 30.0F},
                       {"sc_lowpass", 18000.0F},
                       {"ceiling_on", 1.0F},
                       {"ceiling", 0.0F},
                       {"link", 99.9F}}),
         oursFast,
         {{"ratio", 1.0F}, {"ceiling", -6.0F}}},
        {"x42 darc",
         "http://gareus.org/oss/lv2/darc#stereo",
         {{"threshold", -20.0F}, {"Ratio", 0.75F}, {"attack", 0.01F}, {"release", 0.12F}},
         {{"attack", 0.001F}, {"release", 0.045F}},
         {{"threshold", -10.0F}, {"Ratio", 1.0F}, {"attack", 0.001F}, {"release", 0.03F}}},
        {"x42 dpl",
         "http://gareus.org/oss/lv2/dpl#stereo",
         {{"threshold", -10.0F}, {"release", 0.12F}},
         {{"release", 0.045F}},
         {{"threshold", -6.0F}, {"truepeak", 1.0F}}},
        {"ZamCompX2",
         "urn:zamaudio:ZamCompX2",
         {{"thr", -20.0F}, {"rat", 4.0F}, {"kn", 0.0F}, {"att", 10.0F}, {"rel", 120.0F}},
         {{"att", 0.1F}, {"rel", 45.0F}},
         {{"thr", -6.0F}, {"rat", 20.0F}, {"att", 0.1F}, {"rel", 1.0F}}},
        {"LSP compressor",
         "http://lsp-plug.in/plugins/lv2/compressor_stereo",
         lsp,
         {{"at", 0.1F}, {"rt", 45.0F}},
         {{"al", 0.5F}, {"cr", 100.0F}, {"at", 0.0F}, {"rt", 1.0F}}},
    };
}

/// One contender's measurements.
class Measuring {
  public:
    Measuring(const EffectWorld& world, const LilvPlugin* plugin, const Contender& contender)
        : world_(world), plugin_(plugin), contender_(contender) {}

    /// Output of a settled 1 kHz tone in dB.
    double curve(double level) const {
        Effect effect(world_, plugin_, contender_.normal);
        const auto output = effect.process(sine(1000.0, level, 4 * second));
        return peak(output.left, 3 * second, 4 * second - Effect::blockFrames);
    }

    /// Milliseconds in which 63 % of a change of the gain in dB are done, when a tone of 6 kHz
    /// changes its level between -20 and 0 dB.
    double time(double from, double to) const {
        Effect effect(world_, plugin_, contender_.normal);
        const auto input = join(sine(6000.0, from, 3 * second), sine(6000.0, to, 3 * second));
        const auto output = effect.process(input);
        const std::size_t start = 3 * second + effect.latency();
        // Half a period of the tone.
        constexpr std::size_t step = 4;
        const auto gainAt = [&](std::size_t frame, double level) {
            return peak(output.left, frame, frame + step) - level;
        };
        const double first = gainAt(start - second / 10, from);
        const double last = gainAt(start + 2 * second, to);
        const double aim = first + (1.0 - std::exp(-1.0)) * (last - first);
        for (std::size_t i = start; i < start + 2 * second; ++i) {
            if ((gainAt(i, to) - aim) * (last - first) >= 0.0) {
                return static_cast<double>(i - start) / Effect::rate * 1000.0;
            }
        }
        return std::nan("");
    }

    /// Total harmonic distortion in per cent, of a tone of 0 dB.
    double distortion(double frequency, bool isFast) const {
        const auto [bin, amplitudes] = settledSpectrum(frequency, isFast);
        double power = 0.0;
        for (std::size_t i = 2 * bin; i < amplitudes.size(); i += bin) {
            power += amplitudes[i] * amplitudes[i];
        }
        return 100.0 * std::sqrt(power) / amplitudes[bin];
    }

    /// The highest component that is no harmonic below half the rate, in dB below the tone of 5
    /// kHz.
    double alias() const {
        const auto [bin, amplitudes] = settledSpectrum(5000.0, true);
        double highest = 1e-12;
        for (std::size_t i = 1; i < amplitudes.size(); ++i) {
            highest = i % bin == 0 ? highest : std::max(highest, amplitudes[i]);
        }
        return 20.0 * std::log10(highest / amplitudes[bin]);
    }

    /// How far the true peaks of bursts of noise of 0 dB exceed -6 dB.
    double overshoot() const {
        Effect effect(world_, plugin_, joined(contender_.normal, contender_.ceiling));
        Stereo input = noise(0.0, 4 * second);
        for (std::size_t i = 0; i < input.left.size(); ++i) {
            if (i / 4800 % 2 == 0) {
                input.left[i] = input.right[i] = 0.0F;
            }
        }
        const auto output = effect.process(input);
        return truePeak(output.left) + 6.0;
    }

    /// The difference of the gains of a loud and a quiet channel in dB.
    double linkError() const {
        Effect effect(world_, plugin_, contender_.normal);
        Stereo input = sine(1000.0, 0.0, 3 * second);
        for (float& sample : input.right) {
            sample *= 0.01F;
        }
        const auto output = effect.process(input);
        const auto level = [](const std::vector<float>& samples) {
            return peak(samples, 2 * second, 3 * second - Effect::blockFrames);
        };
        return level(output.right) + 40.0 - level(output.left);
    }

    /// Nanoseconds per frame for a second of noise.
    double cost(bool isDefault) {
        auto& effect = isDefault ? default_ : set_;
        if (effect == nullptr) {
            effect = std::make_unique<Effect>(world_, plugin_,
                                              isDefault ? Settings{} : contender_.normal);
        }
        static const Stereo input = noise(-6.0, second);
        const auto start = std::chrono::steady_clock::now();
        effect->process(input);
        const std::chrono::duration<double, std::nano> taken =
            std::chrono::steady_clock::now() - start;
        return taken.count() / static_cast<double>(second);
    }

    std::uint32_t latency() const {
        Effect effect(world_, plugin_, contender_.normal);
        effect.process(noise(-6.0, Effect::blockFrames));
        return effect.latency();
    }

  private:
    static Stereo join(Stereo first, const Stereo& next) {
        first.left.insert(first.left.end(), next.left.begin(), next.left.end());
        first.right = first.left;
        return first;
    }

    /// The spectrum of a settled tone near the frequency, and the number of the tone in it, which
    /// is a prime: then no folded component falls on a harmonic.
    std::pair<std::size_t, std::vector<double>> settledSpectrum(double frequency,
                                                                bool isFast) const {
        constexpr std::size_t frames = 65536;
        auto bin = static_cast<std::size_t>(frequency / Effect::rate * frames);
        const auto isPrime = [](std::size_t number) {
            for (std::size_t i = 2; i * i <= number; ++i) {
                if (number % i == 0) {
                    return false;
                }
            }
            return true;
        };
        while (!isPrime(bin)) {
            ++bin;
        }
        Effect effect(world_, plugin_,
                      isFast ? joined(contender_.normal, contender_.fast) : contender_.normal);
        const double exact = static_cast<double>(bin) * Effect::rate / frames;
        const auto output = effect.process(sine(exact, 0.0, 5 * frames));
        return {bin, spectrum({output.left.end() - frames, output.left.end()})};
    }

    const EffectWorld& world_;
    const LilvPlugin* plugin_;
    const Contender& contender_;
    std::unique_ptr<Effect> default_;
    std::unique_ptr<Effect> set_;
};

void printRow(const std::string& name, std::vector<Measuring>& all, const char* format,
              const std::function<double(Measuring&)>& measure) {
    std::printf("| %s |", name.c_str());
    for (auto& one : all) {
        std::array<char, 32> text{};
        // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral): the formats stand below.
        static_cast<void>(std::snprintf(text.data(), text.size(), format, measure(one)));
        std::printf(" %s |", text.data());
    }
    std::printf("\n");
}

void printCosts(std::vector<Measuring>& all, int rounds) {
    for (const bool isDefault : {true, false}) {
        std::vector<std::vector<double>> costs(all.size());
        // The first round warms up.
        for (int round = 0; round <= rounds; ++round) {
            for (std::size_t i = 0; i < all.size(); ++i) {
                const double cost = all[i].cost(isDefault);
                if (round != 0) {
                    costs[i].push_back(cost);
                }
            }
        }
        std::size_t next = 0;
        printRow(
            isDefault ? "run(), its defaults, ns per frame" : "run(), these settings, ns per frame",
            all, "%.1f", [&](Measuring&) { return median(costs[next++]); });
    }
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"rounds", "15"}});
    const EffectWorld world;
    std::vector<Contender> present;
    for (const auto& contender : contenders()) {
        if (world.find(contender.uri) != nullptr) {
            present.push_back(contender);
        } else {
            static_cast<void>(std::fprintf(stderr, "%s is not installed.\n", contender.name));
        }
    }
    try {
        std::vector<Measuring> all;
        std::printf("| |");
        for (const auto& contender : present) {
            all.emplace_back(world, world.find(contender.uri), contender);
            std::printf(" %s |", contender.name);
        }
        std::printf("\n|---|");
        for (std::size_t i = 0; i < present.size(); ++i) {
            std::printf("---|");
        }
        std::printf("\n");
        printRow("latency, frames", all, "%.0f", [](Measuring& one) { return one.latency(); });
        for (const double level : {-40.0, -20.0, -10.0, 0.0}) {
            std::array<char, 48> name{};
            static_cast<void>(
                std::snprintf(name.data(), name.size(), "output for %.0f dB, dB", level));
            printRow(name.data(), all, "%.2f", [&](Measuring& one) { return one.curve(level); });
        }
        printRow("attack, ms", all, "%.1f", [](Measuring& one) { return one.time(-20.0, 0.0); });
        printRow("release, ms", all, "%.1f", [](Measuring& one) { return one.time(0.0, -20.0); });
        for (const bool isFast : {false, true}) {
            for (const double frequency : {50.0, 100.0, 1000.0, 5000.0}) {
                const std::string name = "THD at " + std::to_string(std::lround(frequency)) +
                                         " Hz, " + (isFast ? "0.1/45" : "10/120") + " ms, %";
                printRow(name, all, "%.4f",
                         [&](Measuring& one) { return one.distortion(frequency, isFast); });
            }
        }
        printRow("alias of 5 kHz, 0.1/45 ms, dB", all, "%.1f",
                 [](Measuring& one) { return one.alias(); });
        printRow("true peaks of bursts above -6 dB, dB", all, "%.2f",
                 [](Measuring& one) { return one.overshoot(); });
        printRow("gain of the quieter channel / the louder one, dB", all, "%.3f",
                 [](Measuring& one) { return one.linkError(); });
        printCosts(all, options.count("rounds"));
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
        return 1;
    }
    return 0;
}
