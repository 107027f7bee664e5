// Time from a start to the visible plug-in UI, compared with jalv.gtk3; the processor time of the
// idle application; and whether playback has gaps while the UI is shown.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/live/BareSleeper.h"
#include "bench/measuring/Child.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/JackServer.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"
#include "bench/window/Desktop.h"
#include "bench/window/SessionBus.h"
#include "bench/window/XrunCount.h"

namespace {

using namespace orvalo::bench;

constexpr std::uint32_t kAccent = 0x5FC9B8;  // In the plug-in UI and in the icon.
constexpr int kEnough = 60;                  // Pixels of kAccent; the icon has fewer.
constexpr double kTimeout = 20;              // Seconds.
constexpr double kQuantum = 64.0 / 48000.0;  // Seconds, of the JACK server.

/// Checks the condition at every change of the display and ten times a second.
void awaitUntil(Desktop& desktop, const std::function<bool()>& condition, const char* failure) {
    const auto end = monotonicNanoseconds() + static_cast<std::int64_t>(kTimeout * 1e9);
    while (!condition()) {
        if (monotonicNanoseconds() > end) {
            throw std::runtime_error(failure);
        }
        desktop.awaitChange();
    }
}

/// The events of a program's start, in milliseconds.
struct Start {
    double mapped;  ///< Its window is mapped.
    double active;  ///< Its window is active.
    double shown;   ///< The plug-in UI is drawn.
};

Start watchStart(Desktop& desktop, const Command& command, const Environment& environment,
                 bool asksForEffect) {
    awaitUntil(
        desktop, [&] { return desktop.count(kAccent) == 0; }, "a window of the last round stays");
    // The window manager works after the end of a window.
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    desktop.beginWatch();
    const Child program(command, environment);
    if (asksForEffect) {
        awaitUntil(
            desktop, [&] { return desktop.activeAt().has_value(); }, "orvalo shows no window");
        desktop.typeControlE();
    }
    awaitUntil(
        desktop, [&] { return desktop.count(kAccent) >= kEnough; }, "no UI is shown");
    const auto now = monotonicNanoseconds();
    const auto since = [&](std::int64_t moment) {
        return inSeconds(moment - program.beganAt()) * 1e3;
    };
    return {since(desktop.mappedAt().value_or(now)), since(desktop.activeAt().value_or(now)),
            since(now)};
}

/// Prints a line of medians and returns the one of the UI.
double report(const char* what, const std::vector<Start>& starts) {
    const auto medianOf = [&](double Start::*field) {
        std::vector<double> values;
        values.reserve(starts.size());
        for (const auto& start : starts) {
            values.push_back(start.*field);
        }
        return median(values);
    };
    const auto shown = medianOf(&Start::shown);
    std::printf("  %-12s window %6.1f ms   active %6.1f ms   UI %6.1f ms", what,
                medianOf(&Start::mapped), medianOf(&Start::active), shown);
    return shown;
}

void measureStart(Desktop& desktop, const Environment& environment, int rounds) {
    std::vector<Start> ours;
    std::vector<Start> theirs;
    for (int round = 0; round <= rounds; ++round) {
        const auto orvalo =
            watchStart(desktop, {(stage() / "bin/orvalo").string()}, environment, true);
        const auto jalv =
            watchStart(desktop, {"jalv.gtk3", "urn:tessaly:orvalo"}, environment, false);
        // The first round fills the caches.
        if (round != 0) {
            ours.push_back(orvalo);
            theirs.push_back(jalv);
        }
    }
    std::printf("start to the UI on screen, medians of %d starts:\n", rounds);
    const auto jalv = report("jalv.gtk3", theirs);
    std::printf("\n");
    const auto orvalo = report("orvalo", ours);
    std::printf("   %.3f x jalv.gtk3\n", orvalo / jalv);
}

/// The processor time of a process in seconds.
double processorSeconds(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    // The fields after the name in parentheses: utime and stime are the 12th and 13th of these.
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string field;
    double ticks = 0;
    for (int index = 1; fields >> field && index <= 13; ++index) {
        ticks += index >= 12 ? std::stod(field) : 0;
    }
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

/// The running application.
std::unique_ptr<Child> startWindow(Desktop& desktop, const Environment& environment) {
    desktop.beginWatch();
    auto program = std::make_unique<Child>(Command{(stage() / "bin/orvalo").string()}, environment);
    awaitUntil(
        desktop, [&] { return desktop.activeAt().has_value(); }, "orvalo shows no window");
    return program;
}

void showPluginUI(Desktop& desktop) {
    desktop.typeControlE();
    awaitUntil(
        desktop, [&] { return desktop.count(kAccent) >= kEnough; }, "no UI is shown");
}

void measureIdle(Desktop& desktop, const Environment& environment, int seconds) {
    const auto program = startWindow(desktop, environment);
    const auto share = [&](const char* what) {
        std::this_thread::sleep_for(std::chrono::seconds(2));
        const auto before = processorSeconds(program->process());
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        std::printf("  %-26s %8.2f %% of a core\n", what,
                    (processorSeconds(program->process()) - before) / seconds * 100);
    };
    std::printf("idle, %d s each:\n", seconds);
    share("UI never shown");
    desktop.typeControlE();
    share("UI shown");
    desktop.typeControlE();
    share("UI hidden again");
}

/// The xruns of the JACK server from now on, and the punctuality of the machine.
void countXruns(const char* what, const XrunCount& xruns, int seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(2));
    const auto before = xruns.value();
    const BareSleeper sleeper(static_cast<std::int64_t>(kQuantum * 1e9));
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    std::printf(
        "  %-26s %4llu xruns; a bare thread %llu times late by a quantum, %.1f ms at most\n", what,
        static_cast<unsigned long long>(xruns.value() - before),
        static_cast<unsigned long long>(sleeper.lateCount()), inSeconds(sleeper.latest()) * 1e3);
}

void measurePlaying(Desktop& desktop, Environment environment, int seconds) {
    const XrunCount xruns;
    std::printf("JACK server, 64 frames, %d s each:\n", seconds);
    countXruns("nobody plays", xruns, seconds);
    {
        desktop.beginWatch();
        const Child jalv({"jalv.gtk3", "urn:tessaly:orvalo"}, environment);
        awaitUntil(
            desktop, [&] { return desktop.count(kAccent) >= kEnough; }, "jalv.gtk3 shows nothing");
        countXruns("jalv.gtk3 with silence", xruns, seconds);
    }
    environment["ORVALO_AUDIO_OUTPUT"] = "jack";
    const auto program = startWindow(desktop, environment);
    showPluginUI(desktop);
    desktop.typeSpace();
    awaitUntil(
        desktop, [&] { return xruns.isPlaybackConnected(); }, "orvalo does not play");
    countXruns("orvalo with music", xruns, seconds);
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv,
                          {{"--rounds", "9"}, {"--seconds", "15"}, {"--playing", "60"}});
    const int rounds = options.count("--rounds");
    const int seconds = options.count("--seconds");
    const int playing = options.count("--playing");
    try {
        const SessionBus bus;
        const JackServer server;
        Desktop desktop;
        const Environment environment{{"LV2_PATH", lv2Path()}, {"ORVALO_AUDIO_OUTPUT", "null"}};
        measureStart(desktop, environment, rounds);
        measureIdle(desktop, environment, seconds);
        measurePlaying(desktop, environment, playing);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-window: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
