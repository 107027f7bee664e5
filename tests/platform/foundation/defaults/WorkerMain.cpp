// A process that uses a suite, for tests that need a second one.
//
//     defaults_worker SUITE                 runs the commands on its input and answers each with a
//                                           line: set KEY NUMBER, get KEY, remove KEY, count, and
//                                           stop KEY NUMBER, a write that stops the process
//                                           (SIGSTOP) in the middle
//     defaults_worker SUITE endless KEY     stores 1, 2, 3, ... without end and prints each stored
//                                           number
//     defaults_worker SUITE together KEYS   replaces all entries by KEYS keys that are all 1, then
//                                           all 2, ... without end, and prints each stored number
//     defaults_worker SUITE hammer SELF PROCESSES SECONDS
//                                           runs a Hammer as process SELF (from 0) and prints its
//                                           result
//
// Any log line, such as a refused write, ends it with status 3.

#include <glib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "platform/foundation/defaults/UserDefaults.h"
#include "tests/platform/foundation/defaults/Hammer.h"
#include "tests/platform/foundation/defaults/OtherWrites.h"

namespace orvalo::testing {
namespace {

constexpr int kBadUse = 2;
constexpr int kLogged = 3;

void endAtFirstLog() {
    g_log_set_default_handler(
        [](const gchar* /*domain*/, GLogLevelFlags /*level*/, const gchar* text,
           gpointer /*data*/) {
            std::cerr << "defaults_worker: " << text << '\n';
            _exit(kLogged);
        },
        nullptr);
}

std::string execute(UserDefaults& settings, const std::string& line) {
    std::istringstream words(line);
    std::string what;
    std::string key;
    std::int64_t number = 0;
    words >> what >> key >> number;
    if (what == "set") {
        settings.set(number, key);
        return "done";
    }
    if (what == "stop") {
        const StopAtWrite stop;
        settings.set(number, key);
        return "done";
    }
    if (what == "remove") {
        settings.removeObject(key);
        return "done";
    }
    if (what == "count") {
        return std::to_string(settings.dictionaryRepresentation().size());
    }
    const auto value = settings.object(key);
    return value ? description(*value) : "absent";
}

/// Stores 1, 2, 3, ... and prints each stored number.
template <typename Operation>
[[noreturn]] void writeEndlessly(const Operation& store) {
    for (std::int64_t number = 1;; ++number) {
        store(number);
        const auto line = std::to_string(number) + "\n";
        if (write(STDOUT_FILENO, line.data(), line.size()) < 0) {
            _exit(EXIT_FAILURE);
        }
    }
}

int run(const std::vector<std::string>& words) {
    endAtFirstLog();
    const auto settings = words.empty() ? nullptr : UserDefaults::suiteName(words[0]);
    if (!settings) {
        return kBadUse;
    }
    if (words.size() == 1) {
        for (std::string line; std::getline(std::cin, line);) {
            std::cout << execute(*settings, line) << std::endl;
        }
        return EXIT_SUCCESS;
    }
    if (words[1] == "endless" && words.size() == 3) {
        writeEndlessly([&](std::int64_t number) { settings->set(number, words[2]); });
    }
    if (words[1] == "together" && words.size() == 3) {
        const auto domain = std::make_shared<DefaultsDomain>(suiteFile(words[0]).string());
        writeEndlessly([&, keys = std::stoi(words[2])](std::int64_t number) {
            DefaultsDomain::Changes changes;
            for (int key = 0; key < keys; ++key) {
                changes.emplace("key" + std::to_string(key), number);
            }
            domain->change(changes, true);
        });
    }
    if (words[1] == "hammer" && words.size() == 5) {
        Hammer hammer(*settings, std::stoi(words[2]), std::stoi(words[3]));
        std::cout << hammer.run(std::stod(words[4])) << std::endl;
        return EXIT_SUCCESS;
    }
    return kBadUse;
}

}  // namespace
}  // namespace orvalo::testing

// NOLINTNEXTLINE(bugprone-exception-escape): a finding is to end the program.
int main(int argc, char** argv) {
    return orvalo::testing::run(std::vector<std::string>(argv + 1, argv + argc));
}
