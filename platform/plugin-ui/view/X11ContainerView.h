#pragma once

#include <functional>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/ui/UIView.h"

using GdkFrameClock = struct _GdkFrameClock;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

/// A view that keeps the place for a foreign X window, which stands above whatever the toolkit
/// draws there. It says where that window belongs whenever this changes, scrolls where it is
/// smaller than the window can be, and can show a line of text instead. Main thread.
class X11ContainerView : public UIView {
  public:
    /// Where the foreign window belongs, in pixels of the toplevel's X window.
    struct Place {
        unsigned long toplevel = 0;
        int scaleFactor = 1;
        X11Rect area;
        X11Rect visible;  ///< The part of the area that can be seen; may be empty.

        friend bool operator==(const Place&, const Place&) = default;
    };

    /// toplevelPriority: the main loop's for onToplevel.
    explicit X11ContainerView(int toplevelPriority);
    ~X11ContainerView() override;

    /// The extent, in points, below which the view scrolls.
    void setLeastSize(int width, int height);
    /// A line in the middle of the view; an empty one for none.
    void setMessage(const std::string& message);

    /// The view is in a toplevel that is there, though it may not be on screen: a place without an
    /// area. May be empty.
    std::function<void(const Place&)> onToplevel;
    /// The view is on screen, there. Called when it comes, with an area that is not empty, and
    /// after every change. May be empty.
    std::function<void(const Place&)> onPlace;
    /// The view is on screen no more. May be empty.
    std::function<void()> onHidden;
    /// The toplevel is about to go, or the view leaves it. May be empty.
    std::function<void()> onLeaving;

  private:
    void rooted();
    void expectTurn();
    void forgetTurn();
    void arrived();
    void leave();
    void mapped();
    void unmapped();
    void look();

    GtkWidget* stage_;
    GtkWidget* label_;
    GtkWidget* root_ = nullptr;
    const int toplevelPriority_;
    GSourcePointer turn_;             // In which onToplevel is called.
    GdkFrameClock* clock_ = nullptr;  // While the view is on screen.
    Place place_;
};

}  // namespace orvalo
