#include "platform/web/WebKitLibrary.h"

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"
#include "platform/web/WebSandbox.h"

namespace orvalo {

const WebKitLibrary& webkit() {
    static const WebKitLibrary library = [] {
        // Loading takes far longer.
        tryOutSandbox();
        try {
            return WebKitLibrary();
        } catch (const NSError& error) {
            fatalError(std::string("WebKitGTK cannot be loaded: ") + error.what());
        }
    }();
    return library;
}

}  // namespace orvalo
