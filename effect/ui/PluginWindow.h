#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "effect/ui/WindowPicture.h"
#include "effect/ui/model/Rect.h"

namespace orvalo::effect::ui {

/// The UI's window inside the host's window, with its own connection to the X server. Survives the
/// end of the host's window and, if the host does, the end of the server.
class PluginWindow {
  public:
    struct Size {
        int width;
        int height;
    };

    /// Opens the window in a given parent. least: the minimum size in the size hints. Null, with a
    /// line on standard error, without a server or without a parent that exists.
    static std::unique_ptr<PluginWindow> open(std::optional<std::uintptr_t> given, Size size,
                                              Size least);
    ~PluginWindow();
    PluginWindow(const PluginWindow&) = delete;
    PluginWindow& operator=(const PluginWindow&) = delete;

    Window id() const { return window_; }
    Size size() const { return size_; }
    /// Whether the window or the connection to the server is lost.
    bool isClosed() const { return closed_ || lost_; }

    /// Requests a size; size() changes when the server confirms it.
    void requestSize(Size size);

    /// The next pending event. Consecutive motion events are coalesced.
    std::optional<XEvent> nextEvent();

    /// Whether the window is visible. Asks the server periodically, because no event tells when an
    /// ancestor window is unmapped. now: in seconds.
    bool isVisible(double now);

    WindowPicture& picture() { return *picture_; }
    void flush() { XFlush(display_); }

    /// Whether the window itself has the keyboard focus.
    bool ownsFocus() const;
    /// For a message of the XEmbed protocol by which the host moves the keyboard focus into the
    /// window: whether it enters at the last control rather than at the first.
    std::optional<bool> entersAtEnd(const XClientMessageEvent& message) const;
    /// Takes the keyboard focus. time: of the event that caused it.
    void takeKeyboard(Time time);
    /// Sends an unused key to the parent window, unless the host has sent it.
    void forwardKey(const XKeyEvent& key);

  private:
    PluginWindow(Display* display, Window parent, Window window, Visual* visual, Size size);
    void updateState(const XEvent& event);

    Display* display_;
    Window parent_;
    Window window_;
    Size size_;
    std::unique_ptr<WindowPicture> picture_;
    bool closed_ = false;
    // The connection is broken and must not be used.
    bool lost_ = false;
    bool obscured_ = false;
    bool viewable_ = false;
    double visibilityCheckedAt_ = -1.0;
};

}  // namespace orvalo::effect::ui
