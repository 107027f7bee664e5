#include "platform/foundation/loading/SoupLibrary.h"

namespace orvalo {

const SoupLibrary& soup() {
    static const auto library = requiredLibrary<SoupLibrary>("libsoup");
    return library;
}

}  // namespace orvalo
