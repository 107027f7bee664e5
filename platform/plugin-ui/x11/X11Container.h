#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/plugin-ui/x11/X11Keyboard.h"
#include "platform/plugin-ui/x11/X11SizeRules.h"

namespace orvalo {

/// A window inside somebody's toplevel that a UI puts its own window into. The container
/// alone decides about place and extent: in the area that it is given, a window that can be resized
/// fills the area as far as its hints allow, one that cannot stands in its middle, cut where the
/// area is too small. What the UI asks for is noted, and answered. Main thread.
class X11Container {
  public:
    /// parent: the toplevel. Not visible yet. initial: the extent until the UI has a window.
    X11Container(std::shared_ptr<X11Connection> connection, unsigned long parent, X11Size initial);
    /// Destroys it, with whatever is in it.
    ~X11Container();
    X11Container(const X11Container&) = delete;
    X11Container& operator=(const X11Container&) = delete;

    unsigned long window() const { return window_->id; }
    /// Keeps the window there, empty or not, beyond the container's life: for a UI that is
    /// still to clean up in it. Main thread.
    std::shared_ptr<const void> hold() const { return window_; }

    /// The UI has been made: takes charge of its window, at once or as soon as there is one.
    /// child: what the UI says is its window; where it is none in here, the topmost window
    /// in here counts.
    void adopt(unsigned long child);
    /// Whether the UI has a window in here.
    bool hasChild() const { return child_ != 0; }
    /// Lets go of the UI's window, which may be gone soon.
    void release();

    /// Where the UI belongs, and the part of that which can be seen, both in the parent's
    /// pixels.
    void place(const X11Rect& area, const X11Rect& visible);
    void setVisible(bool isVisible);
    /// The UI asks for an extent.
    void requestSize(X11Size size);
    /// The UI's data say that it cannot be resized.
    void setStatedFixed(bool isFixed) { rules_.isStatedFixed = isFixed; }

    const X11SizeRules& rules() const { return rules_; }

    /// The UI's window has another extent now. May be empty.
    std::function<void(X11Size)> onSize;
    /// What the UI asks for, or its hints, have changed. May be empty.
    std::function<void()> onRules;
    /// The UI's window, or the container with it, is gone. May be empty.
    std::function<void()> onGone;
    /// The UI has sent a key on, as X11Keyboard has it. The object may be destroyed inside.
    /// May be empty.
    std::function<void(const X11Key&)> onUnusedKey;

  private:
    struct HeldWindow {
        HeldWindow(std::shared_ptr<X11Connection> server, unsigned long made)
            : connection(std::move(server)), id(made) {}
        ~HeldWindow();
        HeldWindow(const HeldWindow&) = delete;
        HeldWindow& operator=(const HeldWindow&) = delete;

        const std::shared_ptr<X11Connection> connection;
        const unsigned long id;
    };

    void handle(const XEvent& event);
    void handleChild(const XEvent& event);
    void readHints();
    void lay();
    void answer();

    std::shared_ptr<X11Connection> connection_;
    std::shared_ptr<const HeldWindow> window_;
    unsigned long child_ = 0;  // 0 without one.
    X11SizeRules rules_;
    X11Rect area_;
    X11Rect seen_;
    X11Rect frame_;        // The container's own, as it was set last.
    X11Rect given_;        // The child's in the container, as it was set last.
    bool isOpen_ = false;  // Takes windows.
    bool isVisible_ = false;
    bool isMapped_ = false;
    std::unique_ptr<X11Keyboard> keyboard_;
};

}  // namespace orvalo
