#include "programs/defaults/format/Escaped.h"

#include <glib.h>

#include <array>
#include <cstdio>
#include <optional>

namespace orvalo {

namespace {

constexpr std::size_t kMostQuoted = 60;
constexpr std::size_t kMostSaid = 200;

std::string hexadecimal(const char* format, unsigned value) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, value);
    return buffer.data();
}

std::string escapedCharacter(gunichar character) {
    switch (character) {
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return hexadecimal("\\u%04x", character);
    }
}

bool isPlain(gunichar character) {
    return character != '\\' && !g_unichar_iscntrl(character);
}

/// The first character; absent when the first byte begins none.
std::optional<gunichar> frontOf(std::string_view text) {
    const auto character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    // GLib takes a NUL for an end that comes too early.
    if (text.front() == '\0') {
        return 0;
    }
    const bool isNone =
        character == static_cast<gunichar>(-1) || character == static_cast<gunichar>(-2);
    return isNone ? std::nullopt : std::optional(character);
}

/// Escaped, and cut behind so many bytes, but not within a character.
std::string cut(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return escaped(text);
    }
    auto end = most;
    while (end > most - 4 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return escaped(text.substr(0, end)) + "...";
}

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto character = frontOf(text);
        const auto size =
            character ? static_cast<std::size_t>(g_unichar_to_utf8(*character, nullptr)) : 1;
        if (!character) {
            result += hexadecimal("\\x%02x", static_cast<unsigned char>(text.front()));
        } else if (isPlain(*character)) {
            result.append(text.substr(0, size));
        } else {
            result += escapedCharacter(*character);
        }
        text.remove_prefix(size);
    }
    return result;
}

std::string shortened(std::string_view text) {
    return cut(text, kMostSaid);
}

std::string inQuotes(std::string_view text) {
    return "'" + cut(text, kMostQuoted) + "'";
}

}  // namespace orvalo
