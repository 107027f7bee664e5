// Decodes mutations of encoded values. The bytes are refused with an NSError, or they stand for a
// value that can be stored and read again unchanged.
//
//     fuzz_property_list [ITERATIONS [FIRST]]    runs the iterations FIRST, FIRST + 1, ...
//
// When the program dies, give the last iteration that it named as FIRST.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyListCoding.h"

namespace orvalo::testing {
namespace {

// Longer than any input takes, sanitized and on a busy machine.
constexpr unsigned kMostSeconds = 60;
constexpr std::uint64_t kIterationsInALine = 100'000;

using Random = std::mt19937_64;

std::vector<Data> seeds() {
    using Dictionary = PropertyList::Dictionary;
    using List = PropertyList::List;
    const PropertyList all = Dictionary{{"", true},
                                        {"integer", -5},
                                        {"real", 0.1},
                                        {"text", "häß €😀"},
                                        {"data", Data{0, 0xFF}},
                                        {"date", PropertyList::Date{}},
                                        {"list", List{1, List{}, Dictionary{{"a", "b"}}}}};
    std::vector<Data> seeds{binaryPropertyList(all), binaryPropertyList(List(300, false))};
    for (const auto& [key, value] : *all.as<Dictionary>()) {
        seeds.push_back(binaryPropertyList(value));
    }
    return seeds;
}

char randomByte(Random& random) {
    // Half of the bytes are type characters and extremes, the others are random.
    constexpr std::string_view likely("bxdsayv(){}mi\0\1\x7F\x80\xFF", 18);
    return random() % 2 == 0 ? likely[random() % likely.size()] : static_cast<char>(random());
}

void mutate(Random& random, Data& bytes) {
    if (bytes.empty()) {
        return;
    }
    const auto at = random() % bytes.size();
    const auto from = random() % bytes.size();
    const auto count = std::min<std::size_t>(1 + random() % 8, bytes.size() - std::max(at, from));
    const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    switch (random() % 5) {
        case 0:
            bytes[at] = static_cast<std::uint8_t>(randomByte(random));
            break;
        case 1:
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 1U << random() % 8);
            break;
        case 2:
            std::copy_n(Data(bytes).begin() + static_cast<std::ptrdiff_t>(from), count, place);
            break;
        case 3:
            bytes.insert(place, static_cast<std::uint8_t>(randomByte(random)));
            break;
        default:
            bytes.erase(place, place + static_cast<std::ptrdiff_t>(count));
            break;
    }
}

/// Whether the bytes are a value. Throws std::logic_error when storing changes it.
bool decode(const Data& bytes) {
    PropertyList value = false;
    try {
        value = propertyList(bytes);
    } catch (const NSError&) {
        return false;
    }
    const auto again = propertyList(binaryPropertyList(value));
    // A NaN equals nothing, but its description is the same.
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
    using namespace orvalo::testing;
    decodeMutations(seeds(), arguments.empty() ? 1000 : std::stoull(arguments[0]),
                    arguments.size() > 1 ? std::stoull(arguments[1]) : 0);
    return EXIT_SUCCESS;
}
