#include "programs/defaults/format/Escaped.h"

#include <glib.h>

#include <array>
#include <cstdio>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

std::string escaped(std::string_view text, std::string_view kept) {
    const GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string result;
    const char* next = nullptr;
    for (const char* at = valid.get(); *at != '\0'; at = next) {
        next = g_utf8_next_char(at);
        const auto character = g_utf8_get_char(at);
        if (kept.find(*at) != std::string_view::npos) {
            result += *at;
        } else if (character == '\\') {
            result += "\\\\";
        } else if (character == '\n') {
            result += "\\n";
        } else if (g_unichar_iscntrl(character) != FALSE) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", character);
            result += code.data();
        } else {
            result.append(at, next);
        }
    }
    return result;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t mostQuoted = 60;
    return "'" + std::string(text.substr(0, mostQuoted)) +
           (text.size() > mostQuoted ? "...'" : "'");
}

}  // namespace orvalo
