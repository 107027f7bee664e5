#include "support/FourCharCode.h"

#include <glib.h>

#include <array>
#include <memory>
#include <string_view>

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
    const std::unique_ptr<gchar, decltype(&g_free)> decoded(
        g_convert(bytes.data(), bytes.size(), "UTF-8", "MACINTOSH", nullptr, &size, nullptr),
        g_free);
    if (decoded == nullptr) {
        return "FAIL";
    }
    std::string text(decoded.get(), size);
    // The C library's table differs from the one that Apple gave to Unicode in two characters: the
    // increment sign at 0xC6, which it takes for the Greek letter, and the apple at 0xF0.
    replaceAll(text, "\u0394", "\u2206");
    replaceAll(text, "\uE01E", "\uF8FF");
    return text;
}

}  // namespace orvalo
