#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/ui/UIView.h"
#include "platform/ui/UIViewController.h"

namespace orvalo::testing {

/// Starts GTK and a window manager on the virtual display, and enables the UIs of units.
void startToolkit();

/// Requests a unit's view controller and waits for it.
std::shared_ptr<UIViewController> requestPluginUI(AUAudioUnit& unit);

/// The rectangle on the screen of a widget in a shown window, whose scale is 1.
X11Rect placeOf(GtkWidget* widget);

/// A hidden window of 700 x 500 with a button above a stage.
class StageWindow {
  public:
    StageWindow();
    ~StageWindow();
    StageWindow(const StageWindow&) = delete;
    StageWindow& operator=(const StageWindow&) = delete;

    /// Null once the window is closed.
    GtkWidget* window() const { return window_; }
    GtkWidget* button() const { return button_; }
    const std::shared_ptr<UIView>& stage() const { return stage_; }
    /// The number of clicks on the button.
    int presses() const { return presses_; }

    /// Adds a controller's view to the stage and constrains it to the stage's edges.
    void embed(UIViewController& controller) const;
    void present() const { gtk_window_present(GTK_WINDOW(window_)); }
    void close();
    /// The stage's rectangle on the screen.
    X11Rect place() const;

  private:
    GtkWidget* window_;
    GtkWidget* button_;
    std::shared_ptr<UIView> stage_;
    int presses_ = 0;
};

}  // namespace orvalo::testing
