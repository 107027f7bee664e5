// How fast settings are read and written, by one process and by two at once, and how soon another
// process sees a write: ours, QSettings and GSettings with its keyfile backend.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <list>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bench/defaults/Peer.h"
#include "bench/defaults/Store.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Statistics.h"

namespace orvalo::bench {
namespace {

/// What is measured, and with how many processes.
struct Row {
    const char* title;
    const char* what;
    int processes;
};

constexpr Row kRows[] = {
    {"reads, 1 process", "read", 1},
    {"reads, 2 processes", "read", 2},
    {"reads of the newest, 1 process", "fresh", 1},
    {"reads of the newest, 2 processes", "fresh", 2},
    {"writes, 1 process", "write", 1},
    {"writes, 2 processes", "write", 2},
};

using Figures = std::map<std::string, std::vector<double>>;  ///< By contender.

double rate(const Contender& contender, const std::filesystem::path& folder, const Row& row,
            int milliseconds) {
    std::list<Peer> peers;
    for (int count = 0; count < row.processes; ++count) {
        peers.emplace_back(contender.name, folder, row.what, milliseconds);
    }
    double sum = 0;
    for (auto& peer : peers) {
        sum += std::stod(peer.line());
    }
    return sum;
}

void print(const char* title, const Figures& figures, const char* unit, double factor) {
    std::printf("%-34s", title);
    const double own = median(figures.at(contenders().front().name));
    for (const auto& contender : contenders()) {
        const double value = median(figures.at(contender.name));
        std::printf("  %12.1f %s (%6.3f)", value * factor, unit, value / own);
    }
    std::printf("\n");
    std::fflush(stdout);
}

void measureRates(const std::filesystem::path& folder, int rounds, int milliseconds) {
    for (const auto& row : kRows) {
        Figures figures;
        for (int round = 0; round < rounds; ++round) {
            for (const auto& contender : contenders()) {
                figures[contender.name].push_back(rate(contender, folder, row, milliseconds));
            }
        }
        print(row.title, figures, "k/s", 1e-3);
    }
}

/// Seconds from the beginning of each write to the other process's read of it.
std::vector<double> delays(Store& store, Peer& peer, int writes) {
    std::vector<double> result;
    for (int number = 1; number <= writes; ++number) {
        // QSettings tells two files of one size apart by their times, which have 4 ms between them.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        const auto began = monotonicNanoseconds();
        store.write(keyOf(0), number);
        result.push_back(inSeconds(std::stoll(peer.line()) - began));
    }
    return result;
}

void measureDelays(const std::filesystem::path& folder, int writes) {
    Figures figures;
    for (const auto& contender : contenders()) {
        const auto store = contender.open(folder);
        store->write(keyOf(0), 0);
        Peer peer(contender.name, folder, "watch", writes);
        peer.line();
        figures[contender.name] = delays(*store, peer, writes);
    }
    print("until another process sees a write", figures, "us ", 1e6);
}

int run(const Options& options) {
    const ScratchFolder folder;
    makeGSettingsSchema(folder.path());
    std::printf("%-34s", "median (part of ours)");
    for (const auto& contender : contenders()) {
        std::printf("  %25s", contender.name.c_str());
    }
    std::printf("\n");
    measureRates(folder.path(), options.count("--rounds"), options.count("--milliseconds"));
    measureDelays(folder.path(), options.count("--writes"));
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace orvalo::bench

int main(int argc, char** argv) {
    using namespace orvalo::bench;
    try {
        return run(Options(argc, argv,
                           {{"--rounds", "5"}, {"--milliseconds", "300"}, {"--writes", "50"}}));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
