#include "platform/audio/bridge/host/ServiceEnvironment.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace orvalo {

namespace {

constexpr std::array<std::string_view, 10> kNames{
    "PATH",    "HOME",       "LANG",     "LANGUAGE",        "TMPDIR",
    "DISPLAY", "XAUTHORITY", "LV2_PATH", "LD_LIBRARY_PATH", "G_MESSAGES_DEBUG"};
constexpr std::array<std::string_view, 2> kBeginnings{"LC_", "XDG_"};
constexpr std::array<std::string_view, 1> kEndings{"SAN_OPTIONS"};

bool isPassed(std::string_view name) {
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end() ||
           std::any_of(kBeginnings.begin(), kBeginnings.end(),
                       [name](std::string_view part) { return name.starts_with(part); }) ||
           std::any_of(kEndings.begin(), kEndings.end(),
                       [name](std::string_view part) { return name.ends_with(part); });
}

}  // namespace

std::vector<std::string> serviceEnvironment() {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        if (isPassed(text.substr(0, text.find('=')))) {
            result.emplace_back(text);
        }
    }
    return result;
}

}  // namespace orvalo
