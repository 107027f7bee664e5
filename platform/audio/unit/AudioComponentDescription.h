#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvalo {

/// A component's codes, or a search for them.
struct AudioComponentDescription {
    std::uint32_t componentType = 0;
    std::uint32_t componentSubType = 0;
    std::uint32_t componentManufacturer = 0;
    std::uint32_t componentFlags = 0;
    std::uint32_t componentFlagsMask = 0;

    friend bool operator==(const AudioComponentDescription&,
                           const AudioComponentDescription&) = default;
};

/// Four characters packed big-end first: fourCharCode("aumf") is 0x61756D66.
constexpr std::uint32_t fourCharCode(std::string_view text) {
    std::uint32_t code = 0;
    for (const char character : text) {
        code = code << 8U | static_cast<unsigned char>(character);
    }
    return code;
}

/// The record as one line of text:
/// "AudioComponentDescription(componentType: 1635085670, componentSubType: ..., ...)".
std::string description(const AudioComponentDescription& record);

}  // namespace orvalo
