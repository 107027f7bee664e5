// Feeds damaged JSON to the reader of orvalo-defaults. The reader refuses the text with one line,
// or the values that it reads are unchanged when written as JSON or stored, and read again.
//
//     defaults_import_fuzz SEEDS ROUNDS [FIRST]    rounds FIRST, FIRST + 1, ... over the seeds
//     defaults_import_fuzz FILE                    one file as it is
//
// A round depends on its number alone, which is on standard error when the program dies.

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/defaults/PropertyListCoding.h"
#include "programs/defaults/format/JSONForm.h"
#include "tests/testing/FileBytes.h"

namespace {

using namespace orvalo;
using testing::bytesOf;

namespace fs = std::filesystem;

// Tokens that mean something to the reader.
constexpr std::array<std::string_view, 29> kTokens{"{",
                                                   "}",
                                                   "[",
                                                   "]",
                                                   ",",
                                                   ":",
                                                   "\"",
                                                   "\\",
                                                   "\\u0000",
                                                   "\\ud800",
                                                   "\\u009b",
                                                   "null",
                                                   "true",
                                                   "-0",
                                                   "0.0",
                                                   "1e999",
                                                   "9223372036854775807",
                                                   "9223372036854775808",
                                                   "-9223372036854775809",
                                                   "\"$date\"",
                                                   "\"$data\"",
                                                   "\"$real\"",
                                                   "\"$dictionary\"",
                                                   R"({"$date":"2001-01-01T00:00:00Z"})",
                                                   R"({"$real":"nan"})",
                                                   "{\"$dictionary\":{",
                                                   "\xff",
                                                   "\xc2\x9b",
                                                   "\r\n"};

struct Counts {
    int read = 0;
    int refused = 0;
};

std::vector<std::string> seedsIn(const fs::path& folder) {
    std::vector<fs::path> paths{fs::directory_iterator(folder), {}};
    std::ranges::sort(paths);
    std::vector<std::string> seeds;
    std::ranges::transform(paths, std::back_inserter(seeds), bytesOf);
    return seeds;
}

/// The begin and the size of a piece of the text.
std::pair<std::size_t, std::size_t> piece(const std::string& text, std::mt19937& random) {
    const auto at = random() % (text.size() + 1);
    return {at, std::min<std::size_t>(random() % 24, text.size() - at)};
}

/// Replaces a piece of the text by a token, a byte, nothing, or a piece of this or another seed.
void damage(std::string& text, const std::string& other, std::mt19937& random) {
    const auto [at, size] = piece(text, random);
    switch (random() % 5) {
        case 0: {
            // One after the other: compilers differ in the order of arguments.
            const auto length = random() % 2 == 0 ? 0 : size;
            text.replace(at, length, kTokens.at(random() % kTokens.size()));
            break;
        }
        case 1:
            text.replace(at, std::min<std::size_t>(1, size), 1, static_cast<char>(random()));
            break;
        case 2:
            text.erase(at, random() % 16 == 0 ? std::string::npos : size);
            break;
        case 3: {
            const auto [from, length] = piece(text, random);
            text.insert(at, text.substr(from, length));
            break;
        }
        default: {
            const auto [from, length] = piece(other, random);
            text.replace(at, size, other.substr(from, length));
            break;
        }
    }
}

void expectSame(const std::string& expected, const PropertyList::Dictionary& entries,
                const char* carrier) {
    if (jsonText(entries) != expected) {
        throw std::logic_error(std::string(carrier) + " changed a value");
    }
}

void carry(const PropertyList::Dictionary& entries) {
    // Compared as texts, because a NaN equals nothing.
    const auto expected = jsonText(entries);
    expectSame(expected, jsonDomain(expected), "JSON");
    try {
        const auto stored = propertyList(binaryPropertyList(entries));
        expectSame(expected, *stored.as<PropertyList::Dictionary>(), "the store");
    } catch (const NSError&) {
        // The store refuses some values that JSON can hold.
    }
}

void feed(const std::string& text, Counts& counts) {
    PropertyList::Dictionary entries;
    try {
        entries = jsonDomain(text);
        ++counts.read;
    } catch (const std::runtime_error& error) {
        // The program escapes what a key brings into the line.
        const auto line = onOneLine(error.what());
        if (line.empty() || line.size() > 2000) {
            throw std::logic_error("the refusal is no line");
        }
        ++counts.refused;
        return;
    }
    carry(entries);
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): a finding is to end the program.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        std::fputs("defaults_import_fuzz SEEDS ROUNDS [FIRST] | FILE\n", stderr);
        return EXIT_FAILURE;
    }
    // A warning of a library is a finding, too.
    g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    Counts counts;
    if (!fs::is_directory(arguments[0])) {
        feed(bytesOf(arguments[0]), counts);
        return EXIT_SUCCESS;
    }
    const auto seeds = seedsIn(arguments[0]);
    const auto rounds = std::stoul(arguments.at(1));
    const auto first = arguments.size() > 2 ? std::stoul(arguments[2]) : 0;
    for (auto round = first; round < first + rounds; ++round) {
        std::fprintf(stderr, "\rround %lu ", round);
        std::mt19937 random(static_cast<std::mt19937::result_type>(round));
        auto text = seeds.at(random() % seeds.size());
        for (auto count = random() % 8; count > 0; --count) {
            damage(text, seeds.at(random() % seeds.size()), random);
        }
        feed(text, counts);
    }
    std::fprintf(stderr, "\n%d texts read, %d refused\n", counts.read, counts.refused);
    // Without both outcomes the inputs tested nothing.
    return counts.read > 0 && counts.refused > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
