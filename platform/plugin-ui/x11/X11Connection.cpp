#include "platform/plugin-ui/x11/X11Connection.h"

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <array>
#include <utility>

namespace orvalo {

namespace {

/// Selects the presses of all buttons, also in other clients' windows. Returns XInput's opcode; 0
/// where the server has no XInput 2.
int selectPresses(Display* display) {
    int opcode = 0;
    int event = 0;
    int error = 0;
    // Before 2.1 a pointer grab of another client hides presses.
    int major = 2;
    int minor = 1;
    if (XQueryExtension(display, "XInputExtension", &opcode, &event, &error) == False ||
        XIQueryVersion(display, &major, &minor) != Success) {
        return 0;
    }
    std::array<unsigned char, XIMaskLen(XI_RawButtonPress)> bits{};
    XISetMask(bits.data(), XI_RawButtonPress);
    XIEventMask mask{XIAllMasterDevices, static_cast<int>(bits.size()), bits.data()};
    XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
    return opcode;
}

}  // namespace

/// Ready when there is an event, in the socket or in Xlib's queue.
struct X11Connection::Source {
    GSource source;
    X11Connection* connection;

    static X11Connection& of(GSource* source) {
        return *reinterpret_cast<Source*>(source)->connection;
    }
    static gboolean prepare(GSource* source, gint* timeout) {
        *timeout = -1;
        return check(source);
    }
    static gboolean check(GSource* source) {
        // XPending() also sends the requests that wait.
        return XPending(of(source).display_) > 0 ? TRUE : FALSE;
    }
    static gboolean dispatch(GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) {
        of(source).dispatch();
        return G_SOURCE_CONTINUE;
    }
};

std::shared_ptr<X11Connection> X11Connection::open(const std::string& display) {
    auto* opened = XOpenDisplay(display.empty() ? nullptr : display.c_str());
    return std::shared_ptr<X11Connection>(opened == nullptr ? nullptr : new X11Connection(opened));
}

X11Connection::X11Connection(Display* display) : display_(display) {
    X11Errors::installHandler();
    X11Errors::ignore(display_, true);
    // Xlib would end the process when the server ends.
    XSetIOErrorExitHandler(
        display_,
        [](Display* /*lost*/, void* self) {
            g_source_destroy(static_cast<X11Connection*>(self)->source_.get());
        },
        this);
    static GSourceFuncs functions{Source::prepare, Source::check, Source::dispatch,
                                  nullptr,         nullptr,       nullptr};
    source_.reset(g_source_new(&functions, sizeof(Source)));
    reinterpret_cast<Source*>(source_.get())->connection = this;
    // Below GTK's drawing, which has 120, so that a UI cannot delay it.
    constexpr int kPriority = 125;
    g_source_set_priority(source_.get(), kPriority);
    g_source_add_unix_fd(source_.get(), XConnectionNumber(display_), G_IO_IN);
    g_source_attach(source_.get(), nullptr);
}

X11Connection::~X11Connection() {
    source_ = nullptr;
    // Waits for the errors of the last requests.
    XSync(display_, True);
    X11Errors::ignore(display_, false);
    XCloseDisplay(display_);
}

void X11Connection::setHandler(unsigned long window, Handler handler) {
    handlers_.insert_or_assign(window, std::move(handler));
}

void X11Connection::dispatch() {
    // A handler may release the connection.
    const auto self = shared_from_this();
    // Handles only events that have arrived, so that a UI that draws without end cannot block the
    // loop.
    for (int count = XPending(display_); count > 0; --count) {
        XEvent event;
        XNextEvent(display_, &event);
        if (event.type == GenericEvent) {
            dispatchPress(event);
            continue;
        }
        const auto found = handlers_.find(event.xany.window);
        if (found != handlers_.end()) {
            const auto handler = found->second;
            handler(event);
        }
    }
}

void X11Connection::handlePresses() {
    for (XEvent event; XCheckTypedEvent(display_, GenericEvent, &event) != False;) {
        dispatchPress(event);
    }
}

void X11Connection::setPressHandler(const void* owner, std::function<void()> handler) {
    if (inputExtension_ == 0) {
        inputExtension_ = selectPresses(display_);
    }
    pressHandlers_.insert_or_assign(owner, std::move(handler));
}

void X11Connection::dispatchPress(XEvent& event) {
    auto& cookie = event.xcookie;
    if (cookie.extension != inputExtension_ || cookie.evtype != XI_RawButtonPress ||
        XGetEventData(display_, &cookie) == False) {
        return;
    }
    const int button = static_cast<const XIRawEvent*>(cookie.data)->detail;
    XFreeEventData(display_, &cookie);
    // Buttons 4 to 7 are the wheel's.
    constexpr int kWheelRight = 7;
    if (button >= static_cast<int>(Button4) && button <= kWheelRight) {
        return;
    }
    const auto handlers = pressHandlers_;
    for (const auto& [owner, handler] : handlers) {
        if (pressHandlers_.contains(owner)) {
            handler();
        }
    }
}

X11Connection::Pointer X11Connection::pointer(unsigned long window) const {
    Pointer result{false, false};
    for (Window at = DefaultRootWindow(display_); at != None;) {
        result.isInside = result.isInside || at == window;
        Window root = 0;
        Window child = 0;
        int rootX = 0;
        int rootY = 0;
        int x = 0;
        int y = 0;
        unsigned mask = 0;
        if (XQueryPointer(display_, at, &root, &child, &rootX, &rootY, &x, &y, &mask) == False) {
            break;
        }
        result.isButtonHeld = (mask & (Button1Mask | Button2Mask | Button3Mask)) != 0;
        at = child;
    }
    return result;
}

bool X11Connection::isInside(unsigned long window, unsigned long other) const {
    while (window != other) {
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        if (window <= PointerRoot ||
            XQueryTree(display_, window, &root, &parent, &children, &count) == 0) {
            return false;
        }
        if (children != nullptr) {
            XFree(children);
        }
        if (window == root) {
            return false;
        }
        window = parent;
    }
    return true;
}

}  // namespace orvalo
