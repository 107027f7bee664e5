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

/// When a timer means to fire, from when it meant to fire last and when it did, in ns. now: of a
/// firing.
using Due = std::int64_t (*)(std::int64_t lastDue, std::int64_t last, std::int64_t now);

/// On a grid of periods from the start, of which it leaves out those that have passed.
std::int64_t onGrid(std::int64_t lastDue, std::int64_t /*last*/, std::int64_t now) {
    return now - (now - lastDue) % kPeriod;
}

/// On a grid that begins anew when it was a whole period late.
std::int64_t onGridFromLastMiss(std::int64_t lastDue, std::int64_t last, std::int64_t /*now*/) {
    return (last - lastDue >= kPeriod ? last : lastDue) + kPeriod;
}

/// A period after the last firing.
std::int64_t afterLast(std::int64_t /*lastDue*/, std::int64_t last, std::int64_t /*now*/) {
    return last + kPeriod;
}

struct Contender {
    std::string name;
    TimerWay way;
    Due due;                       ///< As its documentation or source has it.
    std::vector<double> lateness;  ///< Of each firing, in ns.
};

void run(Contender& contender, int seconds) {
    const auto end = std::int64_t{seconds} * 1'000'000'000;
    contender.lateness.clear();
    contender.lateness.reserve(static_cast<std::size_t>(end / kPeriod));
    const auto start = monotonicNanoseconds();
    auto due = start;
    auto last = start;
    contender.way(kInterval, [&] {
        const auto now = monotonicNanoseconds();
        due = contender.due(due, last, now);
        last = now;
        contender.lateness.push_back(static_cast<double>(now - due));
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
    std::list<Contender> contenders{{"Timer", runTimer, onGrid, {}},
                                    {"g_timeout_add", runTimeout, afterLast, {}}};
    if (auto* const way = qtTimerWay()) {
        contenders.push_back({"QTimer", way, onGridFromLastMiss, {}});
    }
    report(contenders, "idle", seconds);
    const Load load;
    report(contenders, "one busy", seconds);
    return 0;
}
