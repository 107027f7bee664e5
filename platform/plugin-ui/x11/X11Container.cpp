#include "platform/plugin-ui/x11/X11Container.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>
#include <utility>

namespace orvalo {

namespace {

constexpr long kContainerEvents = StructureNotifyMask | SubstructureNotifyMask | EnterWindowMask |
                                  LeaveWindowMask | FocusChangeMask;

unsigned pixels(int value) {
    return static_cast<unsigned>(std::clamp(value, 1, X11SizeRules::kNoLimit));
}

}  // namespace

X11Container::OwnedWindow::~OwnedWindow() {
    XDestroyWindow(connection->display(), id);
    XFlush(connection->display());
}

X11Container::X11Container(std::shared_ptr<X11Connection> connection, unsigned long parent,
                           X11Size initial)
    : connection_(std::move(connection)), rect_{0, 0, initial.width, initial.height} {
    auto* display = connection_->display();
    const int screen = DefaultScreen(display);
    // UIs do not expect the transparent visual that the toplevel may have.
    XSetWindowAttributes attributes{};
    attributes.background_pixel = BlackPixel(display, screen);
    attributes.border_pixel = 0;
    attributes.colormap = DefaultColormap(display, screen);
    attributes.event_mask = kContainerEvents;
    const auto created =
        XCreateWindow(display, parent, 0, 0, pixels(initial.width), pixels(initial.height), 0,
                      DefaultDepth(display, screen), InputOutput, DefaultVisual(display, screen),
                      CWBackPixel | CWBorderPixel | CWColormap | CWEventMask, &attributes);
    window_ = std::make_shared<OwnedWindow>(connection_, created);
    connection_->setHandler(created, [this](const XEvent& event) { handle(event); });
    keyboard_ = std::make_unique<X11Keyboard>(connection_, parent, created);
    // The UI uses the window over its own connection.
    XSync(display, False);
}

X11Container::~X11Container() {
    release();
    keyboard_ = nullptr;
    connection_->removeHandler(window());
}

void X11Container::adopt(unsigned long child) {
    adoptsWindows_ = true;
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
    childRect_ = {attributes.x, attributes.y, attributes.width, attributes.height};
    if (rules_.requested == X11Size{}) {
        rules_.requested = childRect_.size();
    }
    XSelectInput(display, child_, PropertyChangeMask);
    connection_->setHandler(child_, [this](const XEvent& event) { handleChild(event); });
    // Not earlier: a UI may wait, while it is made, for its window to be mapped.
    XSelectInput(display, window(), kContainerEvents | SubstructureRedirectMask);
    XMapWindow(display, child_);
    readHints();
    layOut();
    if (onRules) {
        onRules();
    }
}

void X11Container::release() {
    adoptsWindows_ = false;
    if (child_ != 0) {
        keyboard_->restoreFocus();
        connection_->removeHandler(child_);
        XSelectInput(connection_->display(), window(), kContainerEvents);
        child_ = 0;
    }
    const bool isStatedFixed = rules_.isStatedFixed;
    rules_ = X11SizeRules();
    rules_.isStatedFixed = isStatedFixed;
    childRect_ = {};
    layOut();
    // The UI, over its own connection, must find the window unmapped.
    XSync(connection_->display(), False);
}

void X11Container::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    visiblePart_ = visible;
    layOut();
}

void X11Container::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    if (!isVisible) {
        keyboard_->restoreFocus();
    }
    layOut();
}

void X11Container::requestSize(X11Size size) {
    if (size.width < 1 || size.height < 1 || size == rules_.requested) {
        return;
    }
    rules_.requested = size;
    layOut();
    if (onRules && child_ != 0) {
        onRules();
    }
}

void X11Container::layOut() {
    auto* display = connection_->display();
    const auto size = rules_.fit(area_.size());
    const X11Rect whole{area_.x + std::max(0, (area_.width - size.width) / 2),
                        area_.y + std::max(0, (area_.height - size.height) / 2), size.width,
                        size.height};
    const auto rect = intersection(whole, visiblePart_);
    const bool isMapped = isVisible_ && child_ != 0 && !rect.isEmpty();
    if (!isMapped && isMapped_) {
        XUnmapWindow(display, window());
    }
    if (child_ != 0 && !rect.isEmpty()) {
        if (rect != rect_) {
            XMoveResizeWindow(display, window(), rect.x, rect.y, pixels(rect.width),
                              pixels(rect.height));
            rect_ = rect;
        }
        const X11Rect child{whole.x - rect.x, whole.y - rect.y, whole.width, whole.height};
        const bool isResized = child.size() != childRect_.size();
        if (child != childRect_) {
            XMoveResizeWindow(display, child_, child.x, child.y, pixels(child.width),
                              pixels(child.height));
            childRect_ = child;
        }
        if (isResized && onSize) {
            onSize(child.size());
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
        case FocusOut:
        case KeyPress:
            keyboard_->handle(event);
            break;
        case ConfigureRequest: {
            const auto& request = event.xconfigurerequest;
            constexpr unsigned long kSize = CWWidth | CWHeight;
            if (request.window == child_ && (request.value_mask & kSize) != 0) {
                requestSize({request.width, request.height});
            }
            if (request.window == child_) {
                sendConfigureNotify();
            } else {
                // The UI places its other windows itself.
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
            // Some UIs create their window later, or in a thread of their own.
            if (adoptsWindows_ && child_ == 0) {
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
                layOut();
                // A copy, because the call may destroy the container.
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
        layOut();
        if (onRules) {
            onRules();
        }
    }
}

void X11Container::sendConfigureNotify() {
    // Also where nothing has changed, because the UI waits for it (ICCCM 4.1.5).
    XEvent event{};
    event.xconfigure.type = ConfigureNotify;
    event.xconfigure.event = child_;
    event.xconfigure.window = child_;
    event.xconfigure.x = childRect_.x;
    event.xconfigure.y = childRect_.y;
    event.xconfigure.width = childRect_.width;
    event.xconfigure.height = childRect_.height;
    XSendEvent(connection_->display(), child_, False, StructureNotifyMask, &event);
    XFlush(connection_->display());
}

}  // namespace orvalo
