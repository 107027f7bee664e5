#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/plugin-ui/x11/X11Keyboard.h"
#include "platform/plugin-ui/x11/X11SizeRules.h"

namespace orvalo {

/// The window, inside a toplevel, that a UI puts its own window into. The container decides about
/// the place and the size of the UI's window: in the area that the container is given, a resizable
/// window fills the area as far as its hints allow; a fixed one stands in the middle, cut where the
/// area is too small. The UI's requests are noted and answered. Main thread.
class X11Container {
  public:
    /// parent: the toplevel. Hidden at first. initial: the size until the UI has a window.
    X11Container(std::shared_ptr<X11Connection> connection, unsigned long parent, X11Size initial);
    /// Destroys the window with all that is in it, unless hold() keeps it.
    ~X11Container();
    X11Container(const X11Container&) = delete;
    X11Container& operator=(const X11Container&) = delete;

    unsigned long window() const { return window_->id; }
    /// Keeps the window beyond the container's life, for a UI that still has to clean up in it.
    /// Main thread.
    std::shared_ptr<const void> hold() const { return window_; }

    /// Manages the window of a UI that has been made, now or as soon as there is one. child: the
    /// window that the UI says it has; where that is not in the container, the topmost window in it
    /// is managed.
    void adopt(unsigned long child);
    /// Whether the UI has a window in the container.
    bool hasChild() const { return child_ != 0; }
    /// Stops managing the UI's window, which may be destroyed soon.
    void release();

    /// The UI's area and the visible part of it, both in the parent's pixels.
    void place(const X11Rect& area, const X11Rect& visible);
    void setVisible(bool isVisible);
    /// Handles the UI's request for a size.
    void requestSize(X11Size size);
    /// Whether the UI's data say that it cannot be resized.
    void setFixedSize(bool isFixed) { rules_.isStatedFixed = isFixed; }

    const X11SizeRules& rules() const { return rules_; }
    X11Keyboard& keyboard() { return *keyboard_; }

    /// The UI's window has a new size. May be empty.
    std::function<void(X11Size)> onSize;
    /// rules() has changed. May be empty.
    std::function<void()> onRules;
    /// The UI's window, or the container with it, is gone. The object may be destroyed inside. May
    /// be empty.
    std::function<void()> onGone;

  private:
    struct OwnedWindow {
        OwnedWindow(std::shared_ptr<X11Connection> server, unsigned long created)
            : connection(std::move(server)), id(created) {}
        ~OwnedWindow();
        OwnedWindow(const OwnedWindow&) = delete;
        OwnedWindow& operator=(const OwnedWindow&) = delete;

        const std::shared_ptr<X11Connection> connection;
        const unsigned long id;
    };

    void handle(const XEvent& event);
    void handleChild(const XEvent& event);
    void readHints();
    void layOut();
    void sendConfigureNotify();

    std::shared_ptr<X11Connection> connection_;
    std::shared_ptr<const OwnedWindow> window_;
    unsigned long child_ = 0;  // The UI's window; 0 without one.
    X11SizeRules rules_;
    X11Rect area_;
    X11Rect visiblePart_;  // Of the area.
    X11Rect rect_;         // The container's, as set last.
    X11Rect childRect_;    // The child's in the container, as set last.
    bool adoptsWindows_ = false;
    bool isVisible_ = false;
    bool isMapped_ = false;
    std::unique_ptr<X11Keyboard> keyboard_;
};

}  // namespace orvalo
