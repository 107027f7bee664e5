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

/// A four-character code packed big-end first: fourCharCode("aumf") is 0x61756D66.
// NOLINTNEXTLINE(modernize-avoid-c-arrays): what a literal is.
consteval std::uint32_t fourCharCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int index = 0; index < 4; ++index) {
        code = code << 8U | static_cast<unsigned char>(text[index]);
    }
    return code;
}

/// The record as one line of text:
/// "AudioComponentDescription(componentType: 1635085670, componentSubType: ..., ...)".
std::string description(const AudioComponentDescription& record);

}  // namespace orvalo
