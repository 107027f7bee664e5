#include "programs/defaults/format/Escaped.h"

#include <glib.h>

#include <array>
#include <cstdio>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

constexpr std::size_t kMostQuoted = 60;

/// Escapes control characters and the characters of the second text, except those of the third.
std::string escaped(std::string_view text, std::string_view others, std::string_view kept) {
    const GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string result;
    const char* next = nullptr;
    for (const char* at = valid.get(); *at != '\0'; at = next) {
        next = g_utf8_next_char(at);
        const auto character = g_utf8_get_char(at);
        const bool isPlain =
            kept.find(*at) != std::string_view::npos ||
            (!g_unichar_iscntrl(character) && others.find(*at) == std::string_view::npos);
        if (isPlain) {
            result.append(at, next);
        } else if (character == '\\') {
            result += "\\\\";
        } else if (character == '\n') {
            result += "\\n";
        } else {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", character);
            result += code.data();
        }
    }
    return result;
}

}  // namespace

std::string escaped(std::string_view text) {
    return escaped(text, "\\", {});
}

std::string inQuotes(std::string_view text) {
    return "'" + escaped(text.substr(0, kMostQuoted)) + (text.size() > kMostQuoted ? "...'" : "'");
}

std::string withoutControls(std::string_view text) {
    return escaped(text, {}, "\n");
}

}  // namespace orvalo
