#include "tests/platform/audio/output/LogLines.h"

namespace orvalo::testing {

namespace {

/// The text after GLib's prefix: "Orvalo-Message: 12:00:00.000: text" or
/// "(process:1): Orvalo-WARNING **: 12:00:00.000: text".
std::string withoutPrefix(const std::string& line) {
    std::size_t begin = line.find("Orvalo-");
    for (int part = 0; part < 2 && begin != std::string::npos; ++part) {
        begin = line.find(": ", begin);
        begin += begin == std::string::npos ? 0 : 2;
    }
    return begin == std::string::npos ? line : line.substr(begin);
}

}  // namespace

std::vector<std::string> LogLines::messages() const {
    std::vector<std::string> result;
    for (const auto& line : captured_.lines()) {
        if (!line.empty()) {
            result.push_back(withoutPrefix(line));
        }
    }
    return result;
}

}  // namespace orvalo::testing
