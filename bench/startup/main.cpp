// Measures the time from the start to the connected effect, against jalv.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include "bench/measuring/Child.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/JackServer.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"
#include "bench/startup/Bundles.h"
#include "bench/startup/PortWatch.h"

namespace {

using namespace orvalo::bench;

constexpr double kPatience = 60.0;
constexpr auto kConnected = "AUExtensionManager: Performed audio unit connection.";

/// Milliseconds from orvalo-play's start to the effect's connection.
double startPlay(const Environment& environment) {
    const Child play({playProgram()}, environment, Child::Output::read);
    const auto connected = play.awaitLine(kConnected, kPatience);
    if (!connected) {
        throw std::runtime_error("orvalo-play connects no effect");
    }
    return inSeconds(*connected - play.beganAt()) * 1e3;
}

/// Milliseconds from jalv's start to its first port; it processes nothing before.
double startJalv(const Environment& environment, PortWatch& watch) {
    watch.awaitQuiet();
    const Child jalv({"jalv", "urn:tessaly:orvalo"}, environment);
    const auto registered = watch.awaitPort(kPatience);
    if (!registered) {
        throw std::runtime_error("jalv registers no port");
    }
    return inSeconds(*registered - jalv.beganAt()) * 1e3;
}

void compare(int bundles, int rounds, PortWatch& watch) {
    const ScratchFolder scratch;
    makeBundles(scratch.path(), bundles);
    Environment silent{{"LV2_PATH", scratch.path().string() + ":" + lv2Path()},
                       {"ORVALO_AUDIO_OUTPUT", "null"}};
    Environment onJack = silent;
    onJack["ORVALO_AUDIO_OUTPUT"] = "jack";
    std::vector<double> playSilent;
    std::vector<double> playOnJack;
    std::vector<double> jalv;
    for (int round = 0; round <= rounds; ++round) {
        const auto withNull = startPlay(silent);
        const auto withJack = startPlay(onJack);
        const auto theirs = startJalv(onJack, watch);
        // The first round fills the caches.
        if (round != 0) {
            playSilent.push_back(withNull);
            playOnJack.push_back(withJack);
            jalv.push_back(theirs);
        }
    }
    std::printf("%d bundles besides the system's, median of %d starts:\n", bundles, rounds);
    std::printf("  %-26s %8.1f ms\n", "jalv", median(jalv));
    for (const auto& [name, series] :
         {std::pair{"orvalo-play, null output", &playSilent}, {"orvalo-play, JACK", &playOnJack}}) {
        std::printf("  %-26s %8.1f ms   %.3f x jalv\n", name, median(*series),
                    median(*series) / median(jalv));
    }
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--rounds", "9"}});
    const int rounds = options.count("--rounds");
    try {
        const JackServer server;
        PortWatch watch;
        for (const int bundles : {100, 1000}) {
            compare(bundles, rounds, watch);
        }
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-startup: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
