#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

/// A window with a screen, from which dialogs can be presented.
class PresenterFixture : public ::testing::Test {
  protected:
    PresenterFixture();
    ~PresenterFixture() override;

    /// Presents the dialog and waits until it is drawn and has the keyboard.
    void show(const std::shared_ptr<UIViewController>& dialog);
    /// The dialog's window on screen; null without one.
    GtkWindow* dialogWindow() const;
    /// The centre of a dialog's widget, in pixels of the display.
    struct Place {
        int x;
        int y;
    };
    Place placeOf(GtkWidget* widget) const;
    /// The button of that title in the dialog; null without one.
    GtkWidget* button(const std::string& title) const;
    void click(const std::string& title) const;

    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> screen;
};

}  // namespace orvalo::testing
