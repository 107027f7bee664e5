#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/ui/UIView.h"

using GtkEventController = struct _GtkEventController;  // NOLINT(bugprone-reserved-identifier)
using GdkFrameClock = struct _GdkFrameClock;  // NOLINT(bugprone-reserved-identifier): GTK's own.
using XEvent = union _XEvent;                 // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo {

/// A view that keeps a place for a foreign X window, which covers all that GTK draws there. Reports
/// the place whenever that changes, scrolls where it is smaller than the foreign window can be, and
/// can show a line of text. Main thread.
class X11ContainerView : public UIView {
  public:
    /// The place of the foreign window, in pixels of the toplevel's X window.
    struct Place {
        unsigned long toplevel = 0;
        int scaleFactor = 1;
        X11Rect area;
        X11Rect visible;  ///< The visible part of the area; may be empty.

        friend bool operator==(const Place&, const Place&) = default;
    };

    /// toplevelPriority: of onToplevel in the main loop.
    explicit X11ContainerView(int toplevelPriority);
    ~X11ContainerView() override;

    /// The size, in points, below which the view scrolls; -1 for none.
    void setMinimumSize(int width, int height);
    /// Shows a text in the middle of the view; empty for none. retries: with a button that calls
    /// onRetry.
    void setMessage(const std::string& message, bool retries = false);
    /// Adds a widget that only assistive technology sees, over the foreign window; null for none.
    void setAccessible(GtkWidget* widget);
    /// As onPlace got it last; without a toplevel while the view is not on screen.
    const Place& place() const { return place_; }

    /// Moves the toolkit's focus from the view to the next or the previous widget.
    void tabOut(bool isBackward);

    /// The user tabs into the view: focuses the foreign window, at its last control when backward.
    /// Returns false if that cannot be; the toolkit's focus then moves on. May be empty.
    std::function<bool(bool isBackward)> onTabInto;
    /// The toplevel's window manager tells the toolkit to take the focus. Returns true when the
    /// foreign window takes it instead. time: of the request. Called while the view is on screen.
    /// May be empty.
    std::function<bool(unsigned long time)> onTakeFocus;
    /// The view is in a toplevel that exists, whether on screen or not. The place has no area yet.
    /// May be empty.
    std::function<void(const Place&)> onToplevel;
    /// The view has appeared on screen, with an area that is not empty, or its place has changed.
    /// May be empty.
    std::function<void(const Place&)> onPlace;
    /// The view is not on screen any more. May be empty.
    std::function<void()> onHidden;
    /// The user wants to try again. May be empty.
    std::function<void()> onRetry;
    /// The view leaves its toplevel, or the toplevel is about to be destroyed. May be empty.
    std::function<void()> onLeaving;

  private:
    void rootChanged();
    void scheduleToplevelReport();
    void reportToplevel();
    void leave();
    void mapped();
    void unmapped();
    void updatePlace();
    void watchTab();
    void stopWatchingTab();
    bool handleKey(unsigned keyval);
    bool handleXEvent(const XEvent& event) const;
    void endTab();
    void focused();
    void tabInto(bool isBackward);

    GtkWidget* content_;
    GtkWidget* notice_;
    GtkWidget* label_;
    GtkWidget* retry_;
    GtkWidget* covered_;  // Has the socket.
    GtkWidget* accessible_ = nullptr;
    GtkWidget* socket_;          // Takes the toolkit's focus for the foreign window.
    GtkEventController* focus_;  // The socket's.
    GtkWidget* root_ = nullptr;
    const int toplevelPriority_;
    GObjectPointer<GtkEventController> keys_;  // The root's; null without a root.
    std::optional<bool> tab_;  // Whether the Tab being handled moves backwards; absent without one.
    GSourcePointer tabEnd_;    // Clears it.
    bool isTabbingOut_ = false;
    GSourcePointer toplevelReport_;   // Null unless scheduled.
    GdkFrameClock* clock_ = nullptr;  // While the view is on screen.
    Place place_;
};

}  // namespace orvalo
