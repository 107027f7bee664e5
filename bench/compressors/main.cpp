// Measures compressors on the LV2 path in the same way, and prints one table. With the option
// `--plots` and a folder it also writes there what plots.gp draws.

#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "bench/compressors/Contenders.h"
#include "bench/compressors/Effect.h"
#include "bench/compressors/Measuring.h"
#include "bench/compressors/PlotData.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo::bench;

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

std::vector<double> medianCosts(std::vector<Measuring>& all, bool isDefault, int rounds) {
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
    std::vector<double> medians;
    medians.reserve(costs.size());
    for (const auto& values : costs) {
        medians.push_back(median(values));
    }
    return medians;
}

void printCosts(std::vector<Measuring>& all, int rounds) {
    for (const bool isDefault : {true, false}) {
        const auto costs = medianCosts(all, isDefault, rounds);
        std::size_t next = 0;
        printRow(
            isDefault ? "run(), its defaults, ns per frame" : "run(), these settings, ns per frame",
            all, "%.1f", [&](Measuring&) { return costs[next++]; });
    }
}

/// What each addition to Orvalo at its defaults costs.
void printAdditions(const EffectWorld& world, const LilvPlugin* plugin, int rounds) {
    std::vector<Measuring> all;
    all.emplace_back(world, plugin, Contender{"defaults", "", {}, {}, {}});
    for (const auto& [name, settings] : additions()) {
        all.emplace_back(world, plugin, Contender{name, "", settings, {}, {}});
    }
    const auto costs = medianCosts(all, false, rounds);
    std::printf("\n| addition | ns per frame |\n|---|---|\n");
    for (std::size_t i = 1; i < all.size(); ++i) {
        std::printf("| %s | %.1f |\n", all[i].contender().name.c_str(), costs[i] - costs[0]);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--rounds", "15"}, {"--plots", ""}});
    const EffectWorld world;
    std::vector<Contender> present;
    for (const auto& contender : contenders()) {
        if (world.find(contender.uri) != nullptr) {
            present.push_back(contender);
        } else {
            static_cast<void>(
                std::fprintf(stderr, "%s is not installed.\n", contender.name.c_str()));
        }
    }
    try {
        std::vector<Measuring> all;
        all.reserve(present.size());
        std::printf("| |");
        for (const auto& contender : present) {
            all.emplace_back(world, world.find(contender.uri), contender);
            std::printf(" %s |", contender.name.c_str());
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
                 [](Measuring& one) { return one.overshoot(0.0); });
        printRow("gain of the quieter channel / the louder one, dB", all, "%.3f",
                 [](Measuring& one) { return one.linkError(40.0); });
        printCosts(all, options.count("--rounds"));
        if (const auto* orvalo = world.find(present.front().uri)) {
            printAdditions(world, orvalo, options.count("--rounds"));
        }
        if (const auto& folder = options.text("--plots"); !folder.empty()) {
            writePlotData(all, folder);
        }
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
        return 1;
    }
    return 0;
}
