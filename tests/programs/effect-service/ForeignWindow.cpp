#include "tests/programs/effect-service/ForeignWindow.h"

#include <X11/Xlib.h>

#include "tests/platform/plugin-ui/x11/Screen.h"

namespace orvalo::testing {

bool isThere(unsigned long window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(screen(), window, &attributes) != 0;
}

void sendMessage(unsigned long window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.format = 32;
    XSendEvent(screen(), window, False, NoEventMask, &event);
    XFlush(screen());
}

}  // namespace orvalo::testing
