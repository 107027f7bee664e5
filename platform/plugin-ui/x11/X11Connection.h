#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/X11Errors.h"

using XEvent = union _XEvent;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo {

/// The host's own connection to an X server, apart from the toolkit's. The main run loop brings its
/// events; its errors are ignored, because other people's windows can go at any time. When the
/// server itself goes, it brings no more events. Main thread.
class X11Connection : public std::enable_shared_from_this<X11Connection> {
  public:
    using Handler = std::function<void(const XEvent&)>;

    /// display: the server's name, as in DISPLAY. Null when there is no such server.
    static std::shared_ptr<X11Connection> open(const std::string& display);
    /// Its windows go with it.
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    Display* display() const { return display_; }

    /// Has the events reported for a window go to a handler, which may stop that itself. One
    /// handler a window.
    void setHandler(unsigned long window, Handler handler);
    void removeHandler(unsigned long window) { handlers_.erase(window); }

    /// Has a handler called whenever a button is pressed anywhere on the screen, whoever gets the
    /// press; the wheel is no button. One handler an owner. Where the server has no XInput 2, no
    /// press is reported.
    void setPressHandler(const void* owner, std::function<void()> handler);
    void removePressHandler(const void* owner) { pressHandlers_.erase(owner); }

    /// Whether the window is that other one or inside it. Asks the server.
    bool isInside(unsigned long window, unsigned long other) const;

    /// Where the pointer is, and what it does.
    struct Pointer {
        bool isInside;      ///< In that window or a window in it, with nothing above.
        bool isButtonHeld;  ///< Any of the first three.
    };
    /// Asks the server.
    Pointer pointer(unsigned long window) const;

  private:
    explicit X11Connection(Display* display);

    void dispatch();
    void dispatchGeneric(XEvent& event);

    struct Source;

    Display* display_;
    GSourcePointer source_;
    std::map<unsigned long, Handler> handlers_;
    std::map<const void*, std::function<void()>> pressHandlers_;
    int inputExtension_ = 0;  // Its major opcode; 0 without it, and until a press handler is set.
};

}  // namespace orvalo
