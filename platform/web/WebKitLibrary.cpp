#include "platform/web/WebKitLibrary.h"

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

const WebKitLibrary& webkit() {
    static const WebKitLibrary library = [] {
        try {
            return WebKitLibrary();
        } catch (const NSError& error) {
            fatalError(std::string("WebKitGTK cannot be loaded: ") + error.what());
        }
    }();
    return library;
}

}  // namespace orvalo
