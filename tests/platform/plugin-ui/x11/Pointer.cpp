#include "tests/platform/plugin-ui/x11/Pointer.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

#include "tests/platform/plugin-ui/x11/Screen.h"

namespace orvalo::testing {

void movePointer(int x, int y) {
    XTestFakeMotionEvent(screen(), -1, x, y, CurrentTime);
    XSync(screen(), False);
}

void pressButton(unsigned button) {
    XTestFakeButtonEvent(screen(), button, True, CurrentTime);
    XSync(screen(), False);
}

void releaseButton(unsigned button) {
    XTestFakeButtonEvent(screen(), button, False, CurrentTime);
    XSync(screen(), False);
}

void click(int x, int y, unsigned button) {
    movePointer(x, y);
    pressButton(button);
    releaseButton(button);
}

void strikeKey(unsigned long keysym) {
    const unsigned code = keycode(keysym);
    XTestFakeKeyEvent(screen(), code, True, CurrentTime);
    XTestFakeKeyEvent(screen(), code, False, CurrentTime);
    XSync(screen(), False);
}

void holdKey(unsigned long keysym, bool down) {
    XTestFakeKeyEvent(screen(), keycode(keysym), down ? True : False, CurrentTime);
    XSync(screen(), False);
}

unsigned keycode(unsigned long keysym) {
    return XKeysymToKeycode(screen(), keysym);
}

void sendKey(unsigned long window, unsigned code) {
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.window = window;
    event.xkey.keycode = code;
    XSendEvent(screen(), window, False, NoEventMask, &event);
    XSync(screen(), False);
}

void tellOfUnusedKeys(unsigned long window) {
    const unsigned long yes = 1;
    XChangeProperty(screen(), window, XInternAtom(screen(), "_ORVALO_SENDS_UNUSED_KEYS", False),
                    XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&yes),
                    1);
    XSync(screen(), False);
}

}  // namespace orvalo::testing
