// How soon the effect's interface is on screen after a start, against jalv.gtk3; and what the
// application costs while nobody does anything.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/measuring/Child.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/JackServer.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"
#include "bench/window/Desktop.h"

namespace {

using namespace orvalo::bench;

constexpr std::uint32_t kAccent = 0x5FC9B8;  // Of the effect's interface, and of the icon.
constexpr int kEnough = 60;                  // Its pixels, counted as Desktop does; not the icon's.
constexpr double kPatience = 20;             // Seconds.

void awaitUntil(const std::function<bool()>& condition, const char* failure) {
    const auto end = monotonicNanoseconds() + static_cast<std::int64_t>(kPatience * 1e9);
    while (!condition()) {
        if (monotonicNanoseconds() > end) {
            throw std::runtime_error(failure);
        }
        // A look at the display keeps the X server from its work for a while.
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

/// Milliseconds from the program's start to the interface on the display.
double startOf(const Desktop& desktop, const Command& command, const Environment& environment,
               bool asksForEffect) {
    awaitUntil([&] { return desktop.count(kAccent) == 0; }, "a window of the last round stays");
    const auto former = desktop.activeWindow();
    const Child program(command, environment);
    if (asksForEffect) {
        awaitUntil([&] { return desktop.activeWindow() != former; }, "orvalo shows no window");
        desktop.typeControlE();
    }
    awaitUntil([&] { return desktop.count(kAccent) >= kEnough; }, "no interface is shown");
    return inSeconds(monotonicNanoseconds() - program.beganAt()) * 1e3;
}

/// Seconds of the processor's time that a process has used.
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

void measureIdle(const Desktop& desktop, const Environment& environment, int seconds) {
    const auto former = desktop.activeWindow();
    const Child program({(stage() / "bin/orvalo").string()}, environment);
    awaitUntil([&] { return desktop.activeWindow() != former; }, "orvalo shows no window");
    const auto share = [&](const char* what) {
        std::this_thread::sleep_for(std::chrono::seconds(2));
        const auto before = processorSeconds(program.process());
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        std::printf("  %-26s %8.2f %% of a core\n", what,
                    (processorSeconds(program.process()) - before) / seconds * 100);
    };
    std::printf("idle, %d s each:\n", seconds);
    share("interface never shown");
    desktop.typeControlE();
    share("interface shown");
    desktop.typeControlE();
    share("interface hidden again");
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--rounds", "9"}, {"--seconds", "15"}});
    try {
        const JackServer server;
        const Desktop desktop;
        Environment environment{{"LV2_PATH", lv2Path()}, {"ORVALO_AUDIO_OUTPUT", "null"}};
        std::vector<double> ours;
        std::vector<double> theirs;
        const int rounds = options.count("--rounds");
        for (int round = 0; round <= rounds; ++round) {
            const auto orvalo =
                startOf(desktop, {(stage() / "bin/orvalo").string()}, environment, true);
            const auto jalv =
                startOf(desktop, {"jalv.gtk3", "urn:tessaly:orvalo"}, environment, false);
            // The first round fills the caches.
            if (round != 0) {
                ours.push_back(orvalo);
                theirs.push_back(jalv);
            }
        }
        std::printf("start to the interface on screen, median of %d starts:\n", rounds);
        std::printf("  %-26s %8.1f ms\n", "jalv.gtk3", median(theirs));
        std::printf("  %-26s %8.1f ms   %.3f x jalv.gtk3\n", "orvalo", median(ours),
                    median(ours) / median(theirs));
        measureIdle(desktop, environment, options.count("--seconds"));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-window: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
