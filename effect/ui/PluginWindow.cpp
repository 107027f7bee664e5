#include "effect/ui/PluginWindow.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstdio>

#include "effect/ui/XErrors.h"
#include "effect/ui/paint/Theme.h"

namespace orvalo::effect::ui {

namespace {

constexpr long events = ExposureMask | StructureNotifyMask | VisibilityChangeMask |
                        ButtonPressMask | ButtonReleaseMask | PointerMotionMask | LeaveWindowMask |
                        KeyPressMask | KeyReleaseMask | FocusChangeMask;

/// How often visibility is asked from the server, in seconds.
constexpr double visibilityPeriod = 0.25;

void logRefusal(const char* reason) {
    static_cast<void>(
        std::fprintf(stderr, "orvalo-ui: %s; the plug-in UI does not open\n", reason));
}

void setHints(Display* display, Window window, PluginWindow::Size size, PluginWindow::Size least) {
    XSizeHints* hints = XAllocSizeHints();
    if (hints == nullptr) {
        return;
    }
    hints->flags = PMinSize | PBaseSize | PSize;
    hints->min_width = least.width;
    hints->min_height = least.height;
    hints->base_width = hints->width = size.width;
    hints->base_height = hints->height = size.height;
    XSetWMNormalHints(display, window, hints);
    XFree(hints);
}

}  // namespace

std::unique_ptr<PluginWindow> PluginWindow::open(std::optional<std::uintptr_t> given, Size size,
                                                 Size least) {
    if (!given) {
        logRefusal("the host gives no parent window (ui:parent)");
        return nullptr;
    }
    const Window parent = *given;
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        logRefusal("cannot connect to an X server");
        return nullptr;
    }
    dropErrors(display);
    XWindowAttributes around{};
    if (XGetWindowAttributes(display, parent, &around) == 0) {
        logRefusal("the host's parent window does not exist");
        XCloseDisplay(display);
        return nullptr;
    }
    // The screen's visual, not the parent's: a translucent parent would make the UI translucent.
    Visual* visual = DefaultVisualOfScreen(around.screen);
    XSetWindowAttributes attributes{};
    attributes.background_pixel = theme::groundPixel;
    attributes.border_pixel = 0;
    attributes.bit_gravity = NorthWestGravity;
    attributes.colormap = DefaultColormapOfScreen(around.screen);
    attributes.event_mask = events;
    const Window window = XCreateWindow(
        display, parent, 0, 0, static_cast<unsigned>(size.width),
        static_cast<unsigned>(size.height), 0, DefaultDepthOfScreen(around.screen), InputOutput,
        visual, CWBackPixel | CWBorderPixel | CWBitGravity | CWColormap | CWEventMask, &attributes);
    setHints(display, window, size, least);
    // A held key sends presses without releases between them.
    XkbSetDetectableAutoRepeat(display, True, nullptr);
    // Tells the host that the UI sends it the keys that it does not use.
    const unsigned long yes = 1;
    XChangeProperty(display, window, XInternAtom(display, "_ORVALO_SENDS_UNUSED_KEYS", False),
                    XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&yes),
                    1);
    XMapWindow(display, window);
    XFlush(display);
    return std::unique_ptr<PluginWindow>(new PluginWindow(display, parent, window, visual, size));
}

PluginWindow::PluginWindow(Display* display, Window parent, Window window, Visual* visual,
                           Size size)
    : display_(display),
      parent_(parent),
      window_(window),
      size_(size),
      picture_(std::make_unique<WindowPicture>(display, window, visual)) {
    // By default Xlib ends the process when the server closes the connection.
    XSetIOErrorExitHandler(
        display,
        [](Display* /*display*/, void* self) { static_cast<PluginWindow*>(self)->lost_ = true; },
        this);
}

PluginWindow::~PluginWindow() {
    if (lost_) {
        // Leaked, because cairo would block while it waits for the lost server.
        static_cast<void>(picture_.release());
        return;
    }
    if (!closed_) {
        XDestroyWindow(display_, window_);
    }
    // The picture uses the connection.
    picture_.reset();
    XCloseDisplay(display_);
}

void PluginWindow::requestSize(Size size) {
    if (isClosed()) {
        return;
    }
    XResizeWindow(display_, window_, static_cast<unsigned>(std::max(1, size.width)),
                  static_cast<unsigned>(std::max(1, size.height)));
    XFlush(display_);
}

std::optional<XEvent> PluginWindow::nextEvent() {
    while (!isClosed() && XPending(display_) > 0) {
        XEvent event;
        XNextEvent(display_, &event);
        const auto isMotionNext = [this] {
            XEvent next;
            return XEventsQueued(display_, QueuedAlready) > 0 && XPeekEvent(display_, &next) != 0 &&
                   next.type == MotionNotify;
        };
        while (event.type == MotionNotify && isMotionNext()) {
            XNextEvent(display_, &event);
        }
        updateState(event);
        if (!isClosed()) {
            return event;
        }
    }
    return std::nullopt;
}

void PluginWindow::updateState(const XEvent& event) {
    switch (event.type) {
        case ConfigureNotify:
            size_ = {event.xconfigure.width, event.xconfigure.height};
            break;
        case DestroyNotify:
            closed_ = closed_ || event.xdestroywindow.window == window_;
            break;
        case VisibilityNotify:
            obscured_ = event.xvisibility.state == VisibilityFullyObscured;
            visibilityCheckedAt_ = -1.0;
            break;
        case MapNotify:
        case UnmapNotify:
        case Expose:
            visibilityCheckedAt_ = -1.0;
            break;
        default:
            break;
    }
}

bool PluginWindow::isVisible(double now) {
    if (obscured_ || isClosed()) {
        return false;
    }
    if (visibilityCheckedAt_ < 0.0 || now - visibilityCheckedAt_ >= visibilityPeriod) {
        XWindowAttributes attributes{};
        viewable_ = XGetWindowAttributes(display_, window_, &attributes) != 0 &&
                    attributes.map_state == IsViewable;
        visibilityCheckedAt_ = now;
    }
    return viewable_ && !isClosed();
}

bool PluginWindow::ownsFocus() const {
    Window focus = None;
    int revert = 0;
    if (!isClosed()) {
        XGetInputFocus(display_, &focus, &revert);
    }
    return focus == window_;
}

std::optional<bool> PluginWindow::entersAtEnd(const XClientMessageEvent& message) const {
    // The codes of the XEmbed specification.
    constexpr long focusIn = 4;
    constexpr long focusFirst = 1;
    constexpr long focusLast = 2;
    if (message.format != 32 || message.message_type != XInternAtom(display_, "_XEMBED", False) ||
        message.data.l[1] != focusIn ||
        (message.data.l[2] != focusFirst && message.data.l[2] != focusLast)) {
        return std::nullopt;
    }
    return message.data.l[2] == focusLast;
}

void PluginWindow::takeKeyboard(Time time) {
    XSetInputFocus(display_, window_, RevertToParent, time);
    XFlush(display_);
}

void PluginWindow::forwardKey(const XKeyEvent& key) {
    if (key.send_event != 0) {
        return;
    }
    XEvent event{};
    event.xkey = key;
    event.xkey.window = parent_;
    XSendEvent(display_, parent_, True, KeyPressMask, &event);
    XFlush(display_);
}

}  // namespace orvalo::effect::ui
