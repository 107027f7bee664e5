#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/X11Errors.h"

using XEvent = union _XEvent;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo {

/// The host's own connection to an X server, beside the toolkit's. The main run loop delivers its
/// events; its errors are ignored, because a UI may destroy its windows at any time. When the
/// server ends, there are no more events. Main thread.
class X11Connection : public std::enable_shared_from_this<X11Connection> {
  public:
    using Handler = std::function<void(const XEvent&)>;

    /// display: the server's name; empty for that in DISPLAY. Null when the server cannot be
    /// reached.
    static std::shared_ptr<X11Connection> open(const std::string& display);
    /// Its windows are destroyed with it.
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    Display* display() const { return display_; }

    /// Sets the handler of a window's events, which may remove itself. One handler per window.
    void setHandler(unsigned long window, Handler handler);
    void removeHandler(unsigned long window) { handlers_.erase(window); }

    /// Sets a handler of button presses anywhere on the screen, in the windows of all clients,
    /// without the wheel's. One handler per owner. Never called where the server has no XInput 2.
    void setPressHandler(const void* owner, std::function<void()> handler);
    void removePressHandler(const void* owner) { pressHandlers_.erase(owner); }

    /// Handles the presses that have arrived, before other events that wait.
    void handlePresses();

    /// Whether the window is the other one or inside it. Asks the server.
    bool isInside(unsigned long window, unsigned long other) const;

    struct Pointer {
        bool isInside;      ///< The window or one in it is under the pointer.
        bool isButtonHeld;  ///< One of the first three.
    };
    /// Asks the server.
    Pointer pointer(unsigned long window) const;

  private:
    explicit X11Connection(Display* display);

    void dispatch();
    void dispatchPress(XEvent& event);

    struct Source;

    Display* display_;
    GSourcePointer source_;
    std::map<unsigned long, Handler> handlers_;
    std::map<const void*, std::function<void()>> pressHandlers_;
    int inputExtension_ = 0;  // XInput's major opcode; 0 without it or a press handler.
};

}  // namespace orvalo
