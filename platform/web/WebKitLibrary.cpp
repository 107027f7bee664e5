#include "platform/web/WebKitLibrary.h"

#include "platform/web/WebSandbox.h"

namespace orvalo {

const WebKitLibrary& webkit() {
    static const auto library = [] {
        // Loading takes far longer.
        tryOutSandbox();
        return requiredLibrary<WebKitLibrary>("WebKitGTK");
    }();
    return library;
}

}  // namespace orvalo
