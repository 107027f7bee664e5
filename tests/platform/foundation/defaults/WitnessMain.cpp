// Processes for a test that kills the one that writes while the other reads.
//
//     defaults_witness SUITE write KEY FIRST   stores the values of FIRST, FIRST + 1, ... and
//     writes
//                                              a line for each that is stored, for ever
//     defaults_witness SUITE watch KEY...      reads the keys over and over. Whenever the number of
//                                              "round" is another, it writes a line: the round, and
//                                              each key's last number behind a blank
//
// A value that is torn, a number that shrinks, and whatever goes to the log end it by a signal.

#include <glib.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/foundation/defaults/UserDefaults.h"
#include "tests/platform/foundation/defaults/Hammer.h"

namespace orvalo::testing {
namespace {

[[noreturn]] void writeFrom(std::int64_t number, UserDefaults& settings, const std::string& key) {
    for (;; ++number) {
        settings.set(Hammer::valueOf(number), key);
        std::cout << number << std::endl;
    }
}

[[noreturn]] void watch(const UserDefaults& settings, const std::vector<std::string>& keys) {
    std::map<std::string, std::int64_t> seen;
    for (std::int64_t known = 0;;) {
        const auto round = settings.integer("round");
        std::string numbers;
        for (const auto& key : keys) {
            const auto number = Hammer::numberOf(settings.object(key)).value_or(0);
            if (number < seen[key]) {
                throw std::logic_error(key + " went from " + std::to_string(seen[key]) +
                                       " back to " + std::to_string(number));
            }
            seen[key] = number;
            numbers += " " + std::to_string(number);
        }
        if (round != known) {
            known = round;
            std::cout << round << numbers << std::endl;
        }
    }
}

int run(const std::vector<std::string>& words) {
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL |
                                                       G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE));
    const auto settings = UserDefaults::suiteName(words.at(0));
    if (words.at(1) == "write") {
        writeFrom(std::stoll(words.at(3)), *settings, words.at(2));
    }
    if (words.at(1) == "watch") {
        watch(*settings, {words.begin() + 2, words.end()});
    }
    return EXIT_FAILURE;
}

}  // namespace
}  // namespace orvalo::testing

// NOLINTNEXTLINE(bugprone-exception-escape): a finding is to end the program.
int main(int argc, char** argv) {
    return orvalo::testing::run(std::vector<std::string>(argv + 1, argv + argc));
}
