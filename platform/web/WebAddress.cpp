#include "platform/web/WebAddress.h"

#include <glib.h>

#include <string>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

// RFC 3986, section 2, beside letters and digits; "%" is treated apart.
constexpr const char* punctuation = "-._~:/?#[]@!$&'()*+,;=";

/// Whether the percent sign at this place begins an escape. g_uri_escape_string() cannot tell.
bool isEscape(std::string_view text, std::size_t place) {
    return text.size() - place > 2 && g_ascii_isxdigit(text[place + 1]) &&
           g_ascii_isxdigit(text[place + 2]);
}

}  // namespace

std::optional<URL> webAddress(const char* text) {
    if (text == nullptr) {
        return std::nullopt;
    }
    const std::string_view whole(text);
    std::string escaped;
    for (std::size_t place = 0; place < whole.size(); ++place) {
        if (whole[place] == '%' && isEscape(whole, place)) {
            escaped += '%';
            continue;
        }
        const std::string character(1, whole[place]);
        escaped += GText(g_uri_escape_string(character.c_str(), punctuation, FALSE)).get();
    }
    return URL::string(escaped);
}

}  // namespace orvalo
