#include "effect/ui/XErrors.h"

// Last of all, as it has macros with plain names.
#include <X11/Xlibint.h>

namespace orvalo::effect::ui {

void dropErrors(Display* display) {
    // An error has a number of one byte; 0 is none.
    constexpr int firstError = 1;
    constexpr int lastError = 127;
    for (int number = firstError; number <= lastError; ++number) {
        // A translation that answers no leaves nothing to be handled.
        XESetWireToError(display, number,
                         [](Display*, XErrorEvent*, xError*) -> Bool { return 0; });
    }
}

}  // namespace orvalo::effect::ui
