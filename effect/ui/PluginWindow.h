#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "effect/ui/WindowPicture.h"
#include "effect/ui/model/Rect.h"

namespace orvalo::effect::ui {

/// The interface's window inside the host's, on a connection to the X server of its own. It
/// survives the end of the host's window, and of the server where the host does.
class PluginWindow {
  public:
    struct Size {
        int width;
        int height;
    };

    /// Opens the window at a size; its hints name the least sensible one. Absent, with a line on
    /// standard error, where there is no server or no such parent.
    static std::unique_ptr<PluginWindow> open(std::uintptr_t parent, Size size, Size least);
    ~PluginWindow();
    PluginWindow(const PluginWindow&) = delete;
    PluginWindow& operator=(const PluginWindow&) = delete;

    Window id() const { return window_; }
    Size size() const { return size_; }
    /// The window or its server has gone.
    bool isClosed() const { return closed_ || lost_; }

    /// Asks for a size; it holds once the server says so.
    void requestSize(Size size);

    /// The next event that is not the window's own affair.
    std::optional<XEvent> nextEvent();

    /// Whether anything drawn could be seen. Looks at the server now and then only, because the
    /// windows around this one come and go without a word. `now` in seconds.
    bool isVisible(double now);

    WindowPicture& picture() { return *picture_; }
    void flush() { XFlush(display_); }

    /// Takes the keyboard at the moment of an event.
    void takeKeyboard(Time time);
    /// Hands a key on that means nothing here. One that a host has sent itself does not go back.
    void passOn(const XKeyEvent& key);

  private:
    PluginWindow(Display* display, Window parent, Window window, Visual* visual, Size size);
    void handleOwn(const XEvent& event);

    Display* display_;
    Window parent_;
    Window window_;
    Size size_;
    std::unique_ptr<WindowPicture> picture_;
    bool closed_ = false;
    // The connection is broken: nothing of it may be used any more.
    bool lost_ = false;
    bool obscured_ = false;
    bool viewable_ = false;
    double looked_ = -1.0;
};

}  // namespace orvalo::effect::ui
