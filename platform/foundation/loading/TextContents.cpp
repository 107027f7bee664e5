#include "platform/foundation/loading/TextContents.h"

#include <glib.h>

#include "platform/foundation/NSError.h"
#include "platform/foundation/loading/ContentsOf.h"

namespace orvalo {

std::string textContentsOf(const URL& url) {
    const auto content = contentsOf(url);
    std::string text(reinterpret_cast<const char*>(content.data()), content.size());
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) == FALSE) {
        throw NSError("NSCocoaErrorDomain", 261, url.path() + " is no text in UTF-8");
    }
    return text;
}

}  // namespace orvalo
