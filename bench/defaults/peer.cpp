// A process that uses a store, for the benchmark, which tells it what to do:
//
//     orvalo-bench-defaults-peer CONTENDER FOLDER read|fresh|write MILLISECONDS
//         does that, of all keys in turn, for so long, and writes how often it did in a second
//     orvalo-bench-defaults-peer CONTENDER FOLDER watch COUNT
//         reads the first key until it is 1, then 2, up to COUNT, and writes for each when it was

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "bench/defaults/Store.h"
#include "bench/measuring/Clocks.h"

namespace orvalo::bench {
namespace {

// Between two looks at the clock.
constexpr int kTurns = 10;

void repeat(const std::function<void(const std::string&)>& operation, double seconds) {
    std::vector<std::string> keys;
    for (int number = 0; number < kKeys; ++number) {
        keys.push_back(keyOf(number));
    }
    const auto begin = monotonicNanoseconds();
    std::int64_t count = 0;
    double passed = 0;
    while (passed < seconds) {
        for (int turn = 0; turn < kTurns; ++turn) {
            for (const auto& key : keys) {
                operation(key);
            }
        }
        count += std::int64_t{kTurns} * kKeys;
        passed = inSeconds(monotonicNanoseconds() - begin);
    }
    std::cout << static_cast<double>(count) / passed << std::endl;
}

void watch(Store& store, std::int64_t last) {
    const auto key = keyOf(0);
    std::cout << "ready" << std::endl;
    for (std::int64_t number = 1; number <= last; ++number) {
        while (store.readFresh(key) < number) {
        }
        std::cout << monotonicNanoseconds() << std::endl;
    }
}

int run(const std::vector<std::string>& words) {
    const auto contender = std::ranges::find(contenders(), words.at(0), &Contender::name);
    const auto store = contender->open(words.at(1));
    const auto& what = words.at(2);
    const auto number = std::stoll(words.at(3));
    const auto seconds = static_cast<double>(number) * 1e-3;
    std::int64_t sum = 0;
    if (what == "read") {
        repeat([&](const auto& key) { sum += store->read(key); }, seconds);
    } else if (what == "fresh") {
        repeat([&](const auto& key) { sum += store->readFresh(key); }, seconds);
    } else if (what == "write") {
        repeat([&](const auto& key) { store->write(key, ++sum); }, seconds);
    } else {
        watch(*store, number);
    }
    return sum < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace
}  // namespace orvalo::bench

// NOLINTNEXTLINE(bugprone-exception-escape): the benchmark sees that it failed.
int main(int argc, char** argv) {
    return orvalo::bench::run(std::vector<std::string>(argv + 1, argv + argc));
}
