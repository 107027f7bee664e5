#include "tests/platform/audio/lv2/fuzz/Mutation.h"

#include <algorithm>
#include <array>

namespace orvalo::testing {

namespace {

constexpr std::array kTokens{"<",
                             ">",
                             "\"",
                             R"(""")",
                             "[",
                             "]",
                             "(",
                             ")",
                             ";",
                             ",",
                             ".",
                             "@prefix",
                             "@base",
                             "a",
                             "_:x",
                             "true",
                             "-1",
                             "0",
                             "4294967296",
                             "1e400",
                             "NaN",
                             "\\u0000",
                             "\\",
                             "#",
                             "^^",
                             "@en",
                             "lv2:port",
                             "lv2:index",
                             "lv2:",
                             "ac:type",
                             "\xFF",
                             "\xC3\xA9",
                             "\n",
                             "lv2:symbol",
                             "2147483647",
                             "\"\"",
                             "rdfs:seeAlso <manifest.ttl>",
                             "<urn:orvalo:zoo:probe>",
                             "lv2:name",
                             "lv2:appliesTo",
                             "lv2:binary <x>",
                             "lv2:index -1",
                             "lv2:default [ ]",
                             "a lv2:Plugin"};

std::size_t below(std::size_t limit, std::mt19937& generator) {
    return limit == 0 ? 0 : generator() % limit;
}

void change(std::string& text, std::mt19937& generator) {
    const auto at = below(text.size(), generator);
    const auto length = std::min(1 + below(40, generator), text.size() - at);
    switch (generator() % 6) {
        case 0:
            if (!text.empty()) {
                text[at] = static_cast<char>(text[at] ^ (1 << generator() % 8));
            }
            break;
        case 1:
            text.erase(at, length);
            break;
        case 2:
            text.insert(below(text.size(), generator), text.substr(at, length));
            break;
        case 3:
            text.insert(at, kTokens[below(kTokens.size(), generator)]);
            break;
        case 4:
            text.replace(at, length, kTokens[below(kTokens.size(), generator)]);
            break;
        default:
            if (generator() % 20 == 0) {
                text.resize(at);
            } else {
                text.insert(at, 1 + below(3, generator), ' ');
            }
            break;
    }
}

}  // namespace

std::string mutated(std::string text, std::mt19937& generator) {
    const auto changes = 1 + below(6, generator);
    for (std::size_t count = 0; count < changes; ++count) {
        change(text, generator);
    }
    return text;
}

}  // namespace orvalo::testing
