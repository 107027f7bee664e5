// How late repeating timers fire, ours and others', while nothing else happens and while one core
// is busy. The contenders run at the same time, each on a thread of its own, so that what disturbs
// one disturbs the others.

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "bench/animation/TimerWays.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo::bench;

constexpr int kInterval = 5;  // ms
constexpr std::int64_t kPeriod = std::int64_t{kInterval} * 1'000'000;

struct Contender {
    std::string name;
    TimerWay way;
    /// Whether the firings keep to a grid from the start; otherwise each counts from the last one.
    bool keepsGrid;
    std::vector<double> lateness;  ///< Of each firing, in ns.
};

void run(Contender& contender, int seconds) {
    const auto end = std::int64_t{seconds} * 1'000'000'000;
    contender.lateness.clear();
    contender.lateness.reserve(static_cast<std::size_t>(end / kPeriod));
    const auto start = monotonicNanoseconds();
    auto from = start;
    contender.way(kInterval, [&] {
        const auto now = monotonicNanoseconds();
        // On a grid, what is more than a period late is the next firing, and this one is missing.
        const auto late = contender.keepsGrid ? (now - start) % kPeriod : now - from - kPeriod;
        contender.lateness.push_back(static_cast<double>(late));
        from = now;
        return now - start < end;
    });
}

/// Keeps one core busy for the object's life.
class Load {
  public:
    ~Load() {
        isOn_ = false;
        thread_.join();
    }

  private:
    std::atomic<bool> isOn_ = true;
    std::thread thread_{[this] {
        while (isOn_) {
        }
    }};
};

void report(std::list<Contender>& contenders, const char* condition, int seconds) {
    constexpr double nanosecondsInMicrosecond = 1000;
    std::list<std::thread> threads;
    for (auto& contender : contenders) {
        threads.emplace_back([&contender, seconds] { run(contender, seconds); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    const double ours = median(contenders.front().lateness);
    for (const auto& contender : contenders) {
        const double middle = median(contender.lateness);
        std::printf(
            "%-8s %-14s median %7.1f us, 99 %% below %7.1f us, %zu of %lld firings; median"
            " %.2f x ours\n",
            condition, contender.name.c_str(), middle / nanosecondsInMicrosecond,
            quantile(contender.lateness, 0.99) / nanosecondsInMicrosecond,
            contender.lateness.size(), static_cast<long long>(seconds * 1'000'000'000LL / kPeriod),
            middle / ours);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--seconds", "60"}});
    const int seconds = options.count("--seconds");
    std::list<Contender> contenders{{"Timer", runTimer, true, {}},
                                    {"g_timeout_add", runTimeout, false, {}}};
    if (auto* const way = qtTimerWay()) {
        contenders.push_back({"QTimer", way, true, {}});
    }
    report(contenders, "idle", seconds);
    const Load load;
    report(contenders, "one busy", seconds);
    return 0;
}
