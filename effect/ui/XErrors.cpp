#include "effect/ui/XErrors.h"

// Last, because it defines macros such as min and max.
#include <X11/Xlibint.h>

namespace orvalo::effect::ui {

void dropErrors(Display* display) {
    // Error codes of the server; 0 is no error.
    constexpr int firstError = 1;
    constexpr int lastError = 127;
    for (int number = firstError; number <= lastError; ++number) {
        // An error whose translation returns 0 is dropped.
        XESetWireToError(display, number,
                         [](Display*, XErrorEvent*, xError*) -> Bool { return 0; });
    }
}

}  // namespace orvalo::effect::ui
