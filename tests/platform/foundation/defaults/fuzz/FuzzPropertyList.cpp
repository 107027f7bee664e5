// Decodes mutations of binary property lists: whatever the bytes are, they are refused with an
// NSError, or stand for a value that can be stored and read again as the same.
//
//     fuzz_property_list SEEDS [ITERATIONS [FIRST]]    iterations FIRST, FIRST + 1, ... of the
//     seeds fuzz_property_list FILE                          one file as it is
//
// When the program dies, the last iteration that it names is the one: give it as FIRST.

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyListCoding.h"

namespace orvalo::testing {
namespace {

// Longer than any input of a few hundred bytes may take, sanitized and on a busy machine.
constexpr unsigned kMostSeconds = 60;
constexpr std::size_t kTrailerSize = 32;
constexpr std::uint64_t kIterationsInALine = 100'000;

using Random = std::mt19937_64;

Data contentsOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<Data> seedsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    std::ranges::copy(std::filesystem::directory_iterator(folder), std::back_inserter(paths));
    std::ranges::sort(paths);
    std::vector<Data> seeds;
    std::ranges::transform(paths, std::back_inserter(seeds), contentsOf);
    return seeds;
}

std::uint8_t randomByte(Random& random) {
    // Markers of every kind with small counts, extremes, and anything.
    constexpr std::uint8_t extremes[] = {0x00, 0x01, 0x08, 0x7F, 0x80, 0xFF};
    switch (random() % 3) {
        case 0:
            return static_cast<std::uint8_t>((random() % 16) << 4U | random() % 16);
        case 1:
            return extremes[random() % std::size(extremes)];
        default:
            return static_cast<std::uint8_t>(random());
    }
}

/// One change that keeps the trailer where it is, so that what it leads to is looked at.
void mutateInside(Random& random, Data& bytes) {
    const auto inside = bytes.size() > kTrailerSize ? bytes.size() - kTrailerSize : bytes.size();
    const auto at = random() % inside;
    const auto from = random() % inside;
    const auto count = std::min<std::size_t>(1 + random() % 8, inside - std::max(at, from));
    switch (random() % 4) {
        case 0:
            bytes[at] = randomByte(random);
            break;
        case 1:
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 1U << random() % 8);
            break;
        case 2:
            std::copy_n(Data(bytes).begin() + static_cast<std::ptrdiff_t>(from), count,
                        bytes.begin() + static_cast<std::ptrdiff_t>(at));
            break;
        default:
            bytes[bytes.size() - 1 - random() % std::min(kTrailerSize, bytes.size())] =
                randomByte(random);
            break;
    }
}

void mutate(Random& random, Data& bytes) {
    if (bytes.empty()) {
        return;
    }
    if (random() % 8 != 0) {
        mutateInside(random, bytes);
    } else if (random() % 2 == 0) {
        bytes.resize(random() % bytes.size());
    } else {
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size()),
                     randomByte(random));
    }
}

/// Whether the bytes are a value. Throws std::logic_error when it does not stay what it is.
bool decode(const Data& bytes) {
    PropertyList value = false;
    try {
        value = propertyList(bytes);
    } catch (const NSError&) {
        return false;
    }
    const auto again = propertyList(binaryPropertyList(value));
    // What is not a number equals nothing, but reads alike.
    if (again != value && description(again) != description(value)) {
        throw std::logic_error("a value changes when it is stored: " + description(value));
    }
    return true;
}

void decodeMutations(const std::vector<Data>& seeds, std::uint64_t iterations,
                     std::uint64_t first) {
    std::uint64_t values = 0;
    for (auto iteration = first; iteration < first + iterations; ++iteration) {
        if (iteration % kIterationsInALine == 0) {
            std::cerr << "from iteration " << iteration << '\n';
        }
        Random random(iteration);
        auto bytes = seeds.at(random() % seeds.size());
        for (auto count = 1 + random() % 6; count > 0; --count) {
            mutate(random, bytes);
        }
        alarm(kMostSeconds);
        values += decode(bytes) ? 1 : 0;
    }
    std::cerr << iterations << " inputs, " << values << " of them values\n";
}

}  // namespace
}  // namespace orvalo::testing

// NOLINTNEXTLINE(bugprone-exception-escape): a finding is to end the program.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        std::cerr << "fuzz_property_list SEEDS [ITERATIONS [FIRST]] | FILE\n";
        return EXIT_FAILURE;
    }
    using namespace orvalo::testing;
    if (!std::filesystem::is_directory(arguments[0])) {
        std::cerr << (decode(contentsOf(arguments[0])) ? "a value\n" : "refused\n");
        return EXIT_SUCCESS;
    }
    const auto iterations = arguments.size() > 1 ? std::stoull(arguments[1]) : 1000;
    const auto first = arguments.size() > 2 ? std::stoull(arguments[2]) : 0;
    decodeMutations(seedsIn(arguments[0]), iterations, first);
    return EXIT_SUCCESS;
}
