#include "platform/web/WebKit.h"

#include <string>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"
#include "platform/web/WebSandbox.h"

namespace orvalo {

const LateLibrary& webkit() {
    static const LateLibrary library = [] {
        // The trial runs while the library loads, which takes far longer.
        tryOutSandbox();
        try {
            return LateLibrary("late-webkit");
        } catch (const NSError& error) {
            fatalError(std::string("WebKitGTK cannot be loaded: ") + error.what());
        }
    }();
    return library;
}

}  // namespace orvalo
