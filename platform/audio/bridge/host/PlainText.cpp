#include "platform/audio/bridge/host/PlainText.h"

#include <glib.h>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

std::string plainText(std::string_view text, std::size_t limit) {
    const GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string line;
    for (const char* place = valid.get(); *place != '\0'; place = g_utf8_next_char(place)) {
        const auto character = g_utf8_get_char(place);
        const auto size = static_cast<std::size_t>(g_utf8_next_char(place) - place);
        const bool isControl = g_unichar_iscntrl(character) != FALSE;
        if (line.empty() && (isControl || character == ' ')) {
            continue;
        }
        if (line.size() + size > limit) {
            break;
        }
        isControl ? line.append(" ") : line.append(place, size);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace orvalo
