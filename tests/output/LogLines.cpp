#include "tests/output/LogLines.h"

#include <regex>

namespace orvalo::testing {

std::vector<std::string> LogLines::messages() const {
    // "Orvalo-Message: 12:00:00.000: text" or "(process:1): Orvalo-WARNING **: 12:00:00.000: text".
    static const std::regex prefix(R"(^(\([^)]*\): )?Orvalo-[A-Za-z]+( \*\*)?: [0-9:.]+: )");
    std::vector<std::string> result;
    for (const auto& line : captured_.lines()) {
        if (!line.empty()) {
            result.push_back(std::regex_replace(line, prefix, ""));
        }
    }
    return result;
}

}  // namespace orvalo::testing
