#include "platform/audio/interface/X11Connection.h"

#include <X11/Xlib.h>

#include <utility>

namespace orvalo {

/// Ready when there is an event, read or not.
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
        // Sends what waits, too.
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
    X11Errors::takeOver();
    X11Errors::ignore(display_, true);
    static GSourceFuncs functions{Source::prepare, Source::check, Source::dispatch,
                                  nullptr,         nullptr,       nullptr};
    source_.reset(g_source_new(&functions, sizeof(Source)));
    reinterpret_cast<Source*>(source_.get())->connection = this;
    g_source_add_unix_fd(source_.get(), XConnectionNumber(display_), G_IO_IN);
    g_source_attach(source_.get(), nullptr);
}

X11Connection::~X11Connection() {
    g_source_destroy(source_.get());
    // Errors of the last requests still come.
    XSync(display_, True);
    X11Errors::ignore(display_, false);
    XCloseDisplay(display_);
}

void X11Connection::setHandler(unsigned long window, Handler handler) {
    handlers_.insert_or_assign(window, std::move(handler));
}

void X11Connection::dispatch() {
    // No more than what is here already: an interface that draws without end must not hold the
    // loop.
    for (int count = XPending(display_); count > 0; --count) {
        XEvent event;
        XNextEvent(display_, &event);
        const auto found = handlers_.find(event.xany.window);
        if (found != handlers_.end()) {
            const auto handler = found->second;
            handler(event);
        }
    }
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
