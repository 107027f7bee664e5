#include "bench/window/Desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>
#include <X11/keysym.h>
#include <poll.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <stdexcept>

#include "bench/measuring/Clocks.h"

namespace orvalo::bench {

namespace {

constexpr int kTimeout = 100;  // Milliseconds.
constexpr int kLeastExtent = 300;

void type(Display* display, KeySym key, bool withControl) {
    const unsigned control = XKeysymToKeycode(display, XK_Control_L);
    const unsigned code = XKeysymToKeycode(display, key);
    if (withControl) {
        XTestFakeKeyEvent(display, control, True, CurrentTime);
    }
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
    if (withControl) {
        XTestFakeKeyEvent(display, control, False, CurrentTime);
    }
    XFlush(display);
}

}  // namespace

/// Reads the picture through shared memory: a copy over the connection would slow the server down.
struct Desktop::Connection {
    Connection() : display(XOpenDisplay(nullptr)) {
        int error = 0;
        if (display == nullptr || XDamageQueryExtension(display, &damage, &error) == False) {
            throw std::runtime_error("the X server cannot be watched");
        }
        const int screen = DefaultScreen(display);
        root = DefaultRootWindow(display);
        active = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
        image =
            XShmCreateImage(display, DefaultVisual(display, screen),
                            static_cast<unsigned>(DefaultDepth(display, screen)), ZPixmap, nullptr,
                            &memory, static_cast<unsigned>(DisplayWidth(display, screen)),
                            static_cast<unsigned>(DisplayHeight(display, screen)));
        memory.shmid = shmget(IPC_PRIVATE,
                              static_cast<std::size_t>(image->bytes_per_line) *
                                  static_cast<std::size_t>(image->height),
                              IPC_CREAT | 0600);
        memory.shmaddr = image->data = static_cast<char*>(shmat(memory.shmid, nullptr, 0));
        XShmAttach(display, &memory);
        XSync(display, False);
        // Removed with its last user.
        shmctl(memory.shmid, IPC_RMID, nullptr);
        XDamageCreate(display, root, XDamageReportRawRectangles);
        XSelectInput(display, root, SubstructureNotifyMask | PropertyChangeMask);
    }
    ~Connection() {
        XShmDetach(display, &memory);
        XCloseDisplay(display);
        XDestroyImage(image);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Display* display;
    Window root = None;
    Atom active = None;
    int damage = 0;
    XShmSegmentInfo memory{};
    XImage* image = nullptr;
};

Desktop::Desktop()
    : manager_({"openbox", "--sm-disable"}), connection_(std::make_unique<Connection>()) {}

Desktop::~Desktop() = default;

void Desktop::beginWatch() {
    XSync(connection_->display, True);
    mappedAt_.reset();
    activeAt_.reset();
}

void Desktop::awaitChange() {
    auto* display = connection_->display;
    if (XPending(display) == 0) {
        pollfd look{XConnectionNumber(display), POLLIN, 0};
        poll(&look, 1, kTimeout);
    }
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        const auto now = monotonicNanoseconds();
        if (event.type == MapNotify && !mappedAt_) {
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(display, event.xmap.window, &attributes) != 0 &&
                attributes.width >= kLeastExtent) {
                mappedAt_ = now;
            }
        } else if (event.type == PropertyNotify && event.xproperty.atom == connection_->active &&
                   !activeAt_ && activeWindow() != None) {
            activeAt_ = now;
        }
    }
}

int Desktop::count(std::uint32_t color) const {
    auto* image = connection_->image;
    XShmGetImage(connection_->display, connection_->root, image, 0, 0, AllPlanes);
    int result = 0;
    for (int y = 0; y < image->height; y += 4) {
        for (int x = 0; x < image->width; x += 4) {
            result += (XGetPixel(image, x, y) & 0xFFFFFFU) == color ? 1 : 0;
        }
    }
    return result;
}

unsigned long Desktop::activeWindow() const {
    Atom kind = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(connection_->display, connection_->root, connection_->active, 0, 1, False,
                       AnyPropertyType, &kind, &format, &count, &rest, &value);
    const auto window = count == 0 ? None : *reinterpret_cast<unsigned long*>(value);
    XFree(value);
    return window;
}

void Desktop::typeControlE() const {
    type(connection_->display, XK_e, true);
}

void Desktop::typeSpace() const {
    type(connection_->display, XK_space, false);
}

}  // namespace orvalo::bench
