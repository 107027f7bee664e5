// Measures what an effect costs in a service compared with this process.

#include <glib.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/bridge/Contenders.h"
#include "bench/bridge/Live.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/JackServer.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo;
using namespace orvalo::bench;

void compareQuanta(const std::string& uri, int seconds) {
    const Contenders contenders(uri);
    for (const std::uint32_t frames : {64U, 256U, 1024U}) {
        const auto costs = renderPaced(contenders, frames, seconds);
        std::printf(
            "%4u frames: in process %6.1f us, %6.1f us at p99; outside %6.1f, %6.1f; "
            "added %6.1f, %6.1f, %.2f x a bare hand-over's %.1f; processor %.4f, %.4f s a "
            "second; %llu of %zu late\n",
            frames, median(costs.local), quantile(costs.local, 0.99), median(costs.bridged),
            quantile(costs.bridged, 0.99), median(costs.added), quantile(costs.added, 0.99),
            median(costs.added) / median(costs.bare), median(costs.bare), costs.localProcessor,
            costs.bridgedProcessor, static_cast<unsigned long long>(costs.lateCount),
            costs.added.size());
        std::fflush(stdout);
    }
}

void compareStarts(const std::string& uri, int rounds) {
    std::vector<double> local;
    std::vector<double> bridged;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = monotonicNanoseconds();
        makeLocal(uri);
        const auto between = monotonicNanoseconds();
        makeBridged(uri);
        const auto end = monotonicNanoseconds();
        local.push_back(static_cast<double>(between - begin) * 1e-6);
        bridged.push_back(static_cast<double>(end - between) * 1e-6);
    }
    std::printf("from instantiation to ready, and gone: in process %.1f ms, outside %.1f ms\n",
                median(local), median(bridged));
}

void compareXruns(const std::string& uri, int seconds) {
    const Contenders contenders(uri);
    const auto local = xrunsWhileBusy(*contenders.local, seconds);
    const auto bridged = xrunsWhileBusy(*contenders.bridged, seconds);
    std::printf(
        "%d s of 64 frames on JACK, one processor busy: xruns in process %llu, outside %llu, "
        "%llu quanta late\n",
        seconds, static_cast<unsigned long long>(local), static_cast<unsigned long long>(bridged),
        static_cast<unsigned long long>(contenders.bridged->lateQuantumCount()));
}

}  // namespace

int main(int argc, char** argv) {
    g_log_writer_default_set_use_stderr(TRUE);
    const Options options(argc, argv,
                          {{"--uri", "urn:tessaly:orvalo"},
                           {"--seconds", "20"},
                           {"--starts", "20"},
                           {"--xrun-seconds", "60"}});
    const auto uri = options.text("--uri");
    const int seconds = options.count("--seconds");
    const int starts = options.count("--starts");
    const int xrunSeconds = options.count("--xrun-seconds");
    try {
        // NOLINTBEGIN(concurrency-mt-unsafe): there is one thread yet.
        setenv("LV2_PATH", lv2Path().c_str(), 1);
        setenv("ORVALO_AUDIO_OUTPUT", "jack", 1);
        // NOLINTEND(concurrency-mt-unsafe)
        const JackServer server;
        compareQuanta(uri, seconds);
        compareStarts(uri, starts);
        compareXruns(uri, xrunSeconds);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-bridge: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
