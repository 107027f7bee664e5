// Measures the host's share of live quanta of 64 frames at 48 kHz, and counts lost ones.

#include <glib.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/live/BareSleeper.h"
#include "bench/live/Performance.h"
#include "bench/live/TimedBundle.h"
#include "bench/live/TimedOutput.h"
#include "bench/measuring/JackServer.h"
#include "bench/measuring/Music.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Statistics.h"
#include "platform/audio/output/NullOutput.h"
#include "platform/foundation/NSError.h"

namespace {

using namespace orvalo;
using namespace orvalo::bench;

constexpr AVAudioFormat kFormat{48000.0, 2};
constexpr std::uint32_t kQuantum = 64;
constexpr int kSecondsOfMusic = 10;

struct Bench {
    std::shared_ptr<AVAudioFile> file;
    RunNanoseconds effectTime;
    int seconds;

    void run(const char* name, std::unique_ptr<AudioOutput> output) const {
        // Twice the quanta of so many seconds.
        QuantumTimes times(static_cast<std::size_t>(seconds) * 2 * 48000 / kQuantum);
        const BareSleeper sleeper(std::llround(kQuantum * 1e9 / kFormat.sampleRate));
        const auto outcome = perform(
            std::make_unique<TimedOutput>(std::move(output), effectTime, times), file, seconds);
        if (times.count() == 0) {
            std::printf("%s: nothing was rendered.\n", name);
            return;
        }
        const auto host = times.hostShares(kFormat.sampleRate);
        const auto effect = times.effectShares(kFormat.sampleRate);
        std::printf(
            "%s, %d s: %zu quanta of up to %u frames, %llu xruns, %llu underruns, "
            "%llu MIDI events\n",
            name, seconds, times.count(), times.largestQuantum(),
            static_cast<unsigned long long>(outcome.xruns),
            static_cast<unsigned long long>(outcome.underruns),
            static_cast<unsigned long long>(outcome.midiEvents));
        std::printf("  quanta that took longer to render than they last: %zu\n",
                    times.overdueCount(kFormat.sampleRate));
        std::printf(
            "  a thread that only sleeps from quantum to quantum was a quantum late %llu times, "
            "%.1f ms at most\n",
            static_cast<unsigned long long>(sleeper.lateCount()),
            static_cast<double>(sleeper.latest()) * 1e-6);
        for (const auto& [part, shares] : {std::pair{"host", &host}, {"effect", &effect}}) {
            std::printf(
                "  %-6s of the quantum: median %6.2f %%, 99 %% below %6.2f %%, "
                "most %6.2f %%\n",
                part, median(*shares) * 100, quantile(*shares, 0.99) * 100,
                quantile(*shares, 1.0) * 100);
        }
        std::fflush(stdout);
    }
};

void run(const Options& options) {
    const int seconds = options.count("--seconds");
    const ScratchFolder scratch;
    const auto effectTime = installTimedEffect(scratch.path());
    std::filesystem::path music = options.text("--file");
    if (music.empty()) {
        music = scratch.path() / "music.m4a";
        makeMusic(music, kSecondsOfMusic);
    }
    // setenv() is safe only before there is a second thread.
    const JackServer server;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): see above.
    setenv("ORVALO_AUDIO_OUTPUT", "jack", 1);
    const auto file = AVAudioFile::forReading(URL::fileURLWithPath(music.string()));

    const Bench bench{file, effectTime, seconds};
    bench.run("null output", std::make_unique<NullOutput>(kFormat, kQuantum));
    bench.run("JACK, dummy driver", AudioOutput::system());
}

}  // namespace

int main(int argc, char** argv) {
    g_log_writer_default_set_use_stderr(TRUE);
    const Options options(argc, argv, {{"--file", ""}, {"--seconds", "60"}});
    try {
        run(options);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-live: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
