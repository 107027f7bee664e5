#include "support/FourCharCode.h"

#include <glib.h>

#include <array>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

std::string stringValue(std::uint32_t code) {
    const std::array<char, 4> bytes{
        static_cast<char>(code >> 24U & 0xFFU), static_cast<char>(code >> 16U & 0xFFU),
        static_cast<char>(code >> 8U & 0xFFU), static_cast<char>(code & 0xFFU)};
    gsize size = 0;
    const GText decoded(
        g_convert(bytes.data(), bytes.size(), "UTF-8", "MACINTOSH", nullptr, &size, nullptr));
    if (decoded == nullptr) {
        return "FAIL";
    }
    std::string text(decoded.get(), size);
    // g_convert() differs from Apple's table for Unicode in two characters: it decodes 0xC6, the
    // increment sign, as the Greek letter, and 0xF0, the apple, as U+E01E.
    replaceAll(text, "\u0394", "\u2206");
    replaceAll(text, "\uE01E", "\uF8FF");
    return text;
}

}  // namespace orvalo
