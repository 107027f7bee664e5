#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/plugin-ui/x11/X11Geometry.h"
#include "platform/ui/UIView.h"
#include "platform/ui/UIViewController.h"

namespace orvalo::testing {

/// The toolkit on the virtual display with a window manager; units have UIs from then on.
void startToolkit();

/// Asks a unit for its UI and waits for the answer.
std::shared_ptr<UIViewController> requestPluginUI(AUAudioUnit& unit);

/// A window of 700 x 500 with a button above a stage, as the main screen has them. Not shown yet.
class StageWindow {
  public:
    StageWindow();
    ~StageWindow();
    StageWindow(const StageWindow&) = delete;
    StageWindow& operator=(const StageWindow&) = delete;

    /// The window; null once it is closed.
    GtkWidget* window() const { return window_; }
    GtkWidget* button() const { return button_; }
    const std::shared_ptr<UIView>& stage() const { return stage_; }
    /// How often the button was pressed.
    int presses() const { return presses_; }

    /// Puts a controller's view into the stage, whose edges it keeps to.
    void embed(UIViewController& controller) const;
    void present() const { gtk_window_present(GTK_WINDOW(window_)); }
    void close();
    /// Where the stage is on the screen.
    X11Rect place() const;

  private:
    GtkWidget* window_;
    GtkWidget* button_;
    std::shared_ptr<UIView> stage_;
    int presses_ = 0;
};

}  // namespace orvalo::testing
