#include "platform/foundation/OneLine.h"

#include <glib.h>

#include <array>
#include <cstdio>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

std::string onOneLine(std::string_view text) {
    const GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string result;
    const char* next = nullptr;
    for (const char* at = valid.get(); *at != '\0'; at = next) {
        next = g_utf8_next_char(at);
        const auto character = g_utf8_get_char(at);
        if (!g_unichar_iscntrl(character)) {
            result.append(at, next);
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

}  // namespace orvalo
