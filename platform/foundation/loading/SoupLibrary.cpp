#include "platform/foundation/loading/SoupLibrary.h"

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

const SoupLibrary& soup() {
    static const SoupLibrary library = [] {
        try {
            return SoupLibrary();
        } catch (const NSError& error) {
            fatalError(std::string("libsoup cannot be loaded: ") + error.what());
        }
    }();
    return library;
}

}  // namespace orvalo
