#include "platform/plugin-ui/x11/X11Container.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>
#include <utility>

namespace orvalo {

namespace {

constexpr long kOwnEvents = StructureNotifyMask | SubstructureNotifyMask | EnterWindowMask |
                            LeaveWindowMask | FocusChangeMask;

unsigned extent(int value) {
    return static_cast<unsigned>(std::clamp(value, 1, X11SizeRules::kNoLimit));
}

}  // namespace

X11Container::HeldWindow::~HeldWindow() {
    XDestroyWindow(connection->display(), id);
    XFlush(connection->display());
}

X11Container::X11Container(std::shared_ptr<X11Connection> connection, unsigned long parent,
                           X11Size initial)
    : connection_(std::move(connection)), frame_{0, 0, initial.width, initial.height} {
    auto* display = connection_->display();
    const int screen = DefaultScreen(display);
    // The toplevel may have a visual with transparency, which UIs do not expect to inherit.
    XSetWindowAttributes attributes{};
    attributes.background_pixel = BlackPixel(display, screen);
    attributes.border_pixel = 0;
    attributes.colormap = DefaultColormap(display, screen);
    attributes.event_mask = kOwnEvents;
    const auto made =
        XCreateWindow(display, parent, 0, 0, extent(initial.width), extent(initial.height), 0,
                      DefaultDepth(display, screen), InputOutput, DefaultVisual(display, screen),
                      CWBackPixel | CWBorderPixel | CWColormap | CWEventMask, &attributes);
    window_ = std::make_shared<HeldWindow>(connection_, made);
    connection_->setHandler(made, [this](const XEvent& event) { handle(event); });
    keyboard_ = std::make_unique<X11Keyboard>(connection_, parent, made);
    keyboard_->onUnusedKey = [this](const X11Key& key) {
        if (const auto take = onUnusedKey) {
            take(key);
        }
    };
    // UIs use it over their own connections.
    XSync(display, False);
}

X11Container::~X11Container() {
    release();
    keyboard_ = nullptr;
    connection_->removeHandler(window());
}

void X11Container::adopt(unsigned long child) {
    isOpen_ = true;
    auto* display = connection_->display();
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    unsigned long found = 0;
    if (XQueryTree(display, window(), &root, &parent, &children, &count) != 0 && count > 0) {
        found = std::find(children, children + count, child) == children + count
                    ? children[count - 1]
                    : child;
        XFree(children);
    }
    XWindowAttributes attributes{};
    if (found == 0 || XGetWindowAttributes(display, found, &attributes) == 0) {
        return;
    }
    if (child_ != 0 && child_ != found) {
        connection_->removeHandler(child_);
        XSelectInput(display, child_, NoEventMask);
    }
    child_ = found;
    given_ = {attributes.x, attributes.y, attributes.width, attributes.height};
    if (rules_.wanted == X11Size{}) {
        rules_.wanted = given_.size();
    }
    XSelectInput(display, child_, PropertyChangeMask);
    connection_->setHandler(child_, [this](const XEvent& event) { handleChild(event); });
    // Only from now on: a UI may wait for its window to be mapped while it is made.
    XSelectInput(display, window(), kOwnEvents | SubstructureRedirectMask);
    XMapWindow(display, child_);
    readHints();
    lay();
    if (onRules) {
        onRules();
    }
}

void X11Container::release() {
    isOpen_ = false;
    if (child_ != 0) {
        keyboard_->takeBack();
        connection_->removeHandler(child_);
        XSelectInput(connection_->display(), window(), kOwnEvents);
        child_ = 0;
    }
    const bool isStatedFixed = rules_.isStatedFixed;
    rules_ = X11SizeRules();
    rules_.isStatedFixed = isStatedFixed;
    given_ = {};
    lay();
    // The UI's own connection must find the window unmapped.
    XSync(connection_->display(), False);
}

void X11Container::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    seen_ = visible;
    lay();
}

void X11Container::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    if (!isVisible) {
        keyboard_->takeBack();
    }
    lay();
}

void X11Container::requestSize(X11Size size) {
    if (size.width < 1 || size.height < 1 || size == rules_.wanted) {
        return;
    }
    rules_.wanted = size;
    lay();
    if (onRules && child_ != 0) {
        onRules();
    }
}

void X11Container::lay() {
    auto* display = connection_->display();
    const auto size = rules_.fit(area_.size());
    const X11Rect whole{area_.x + std::max(0, (area_.width - size.width) / 2),
                        area_.y + std::max(0, (area_.height - size.height) / 2), size.width,
                        size.height};
    const auto frame = intersection(whole, seen_);
    const bool isMapped = isVisible_ && child_ != 0 && !frame.isEmpty();
    if (!isMapped && isMapped_) {
        XUnmapWindow(display, window());
    }
    if (child_ != 0 && !frame.isEmpty()) {
        if (frame != frame_) {
            XMoveResizeWindow(display, window(), frame.x, frame.y, extent(frame.width),
                              extent(frame.height));
            frame_ = frame;
        }
        const X11Rect given{whole.x - frame.x, whole.y - frame.y, whole.width, whole.height};
        const bool isResized = given.size() != given_.size();
        if (given != given_) {
            XMoveResizeWindow(display, child_, given.x, given.y, extent(given.width),
                              extent(given.height));
            given_ = given;
        }
        if (isResized && onSize) {
            onSize(given.size());
        }
    }
    if (isMapped && !isMapped_) {
        XMapWindow(display, window());
    }
    isMapped_ = isMapped;
    XFlush(display);
}

void X11Container::readHints() {
    auto* display = connection_->display();
    const std::unique_ptr<XSizeHints, int (*)(void*)> hints(XAllocSizeHints(), XFree);
    long supplied = 0;
    rules_.smallest = {1, 1};
    rules_.largest = {X11SizeRules::kNoLimit, X11SizeRules::kNoLimit};
    rules_.narrowest.reset();
    rules_.widest.reset();
    if (XGetWMNormalHints(display, child_, hints.get(), &supplied) == 0) {
        return;
    }
    if ((hints->flags & PMinSize) != 0) {
        rules_.smallest = {std::max(1, hints->min_width), std::max(1, hints->min_height)};
    } else if ((hints->flags & PBaseSize) != 0) {
        rules_.smallest = {std::max(1, hints->base_width), std::max(1, hints->base_height)};
    }
    if ((hints->flags & PMaxSize) != 0) {
        const auto limit = [](int value) { return value > 0 ? value : X11SizeRules::kNoLimit; };
        rules_.largest = {limit(hints->max_width), limit(hints->max_height)};
    }
    const bool hasAspect = (hints->flags & PAspect) != 0 && hints->min_aspect.x > 0 &&
                           hints->min_aspect.y > 0 && hints->max_aspect.x > 0 &&
                           hints->max_aspect.y > 0;
    if (hasAspect) {
        rules_.narrowest = {hints->min_aspect.x, hints->min_aspect.y};
        rules_.widest = {hints->max_aspect.x, hints->max_aspect.y};
    }
}

void X11Container::handle(const XEvent& event) {
    switch (event.type) {
        case EnterNotify:
        case LeaveNotify:
        case FocusIn:
        case KeyPress:
            keyboard_->handle(event);
            break;
        case ConfigureRequest: {
            const auto& request = event.xconfigurerequest;
            constexpr unsigned long kExtent = CWWidth | CWHeight;
            if (request.window == child_ && (request.value_mask & kExtent) != 0) {
                requestSize({request.width, request.height});
            }
            if (request.window == child_) {
                answer();
            } else {
                // Other windows of the UI are its own affair, as are their errors.
                XWindowChanges changes{};
                changes.x = request.x;
                changes.y = request.y;
                changes.width = request.width;
                changes.height = request.height;
                changes.border_width = request.border_width;
                changes.sibling = request.above;
                changes.stack_mode = request.detail;
                XConfigureWindow(connection_->display(), request.window,
                                 static_cast<unsigned>(request.value_mask), &changes);
            }
            break;
        }
        case CreateNotify:
            // Some UIs make their window in a thread of their own, or later.
            if (isOpen_ && child_ == 0) {
                adopt(event.xcreatewindow.window);
            }
            break;
        case MapRequest:
            XMapWindow(connection_->display(), event.xmaprequest.window);
            break;
        case DestroyNotify:
        case ReparentNotify: {
            const bool isChild =
                event.type == DestroyNotify
                    ? event.xdestroywindow.window == child_
                    : event.xreparent.window == child_ && event.xreparent.parent != window();
            const bool isOwn =
                event.type == DestroyNotify && event.xdestroywindow.window == window();
            if ((isChild || isOwn) && child_ != 0) {
                connection_->removeHandler(child_);
                child_ = 0;
                lay();
                // It may end the container, and itself with it.
                if (const auto gone = onGone) {
                    gone();
                }
            }
            break;
        }
        default:
            break;
    }
}

void X11Container::handleChild(const XEvent& event) {
    if (event.type == PropertyNotify && event.xproperty.atom == XA_WM_NORMAL_HINTS) {
        readHints();
        lay();
        if (onRules) {
            onRules();
        }
    }
}

void X11Container::answer() {
    // Also where nothing has changed: the UI waits to be told (ICCCM 4.1.5).
    XEvent event{};
    event.xconfigure.type = ConfigureNotify;
    event.xconfigure.event = child_;
    event.xconfigure.window = child_;
    event.xconfigure.x = given_.x;
    event.xconfigure.y = given_.y;
    event.xconfigure.width = given_.width;
    event.xconfigure.height = given_.height;
    XSendEvent(connection_->display(), child_, False, StructureNotifyMask, &event);
    XFlush(connection_->display());
}

}  // namespace orvalo
