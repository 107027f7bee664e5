#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

/// A window with a screen that can present dialogs.
class PresenterFixture : public ::testing::Test {
  protected:
    PresenterFixture();
    ~PresenterFixture() override;

    /// Presents the dialog and waits until it is drawn and has the keyboard focus.
    void show(const std::shared_ptr<UIViewController>& dialog);
    /// The dialog's window, or null.
    GtkWindow* dialogWindow() const;
    /// A point, in pixels of the display.
    struct Place {
        int x;
        int y;
    };
    /// The centre of a widget.
    Place placeOf(GtkWidget* widget) const;
    /// The dialog's button of that title, or null.
    GtkWidget* button(const std::string& title) const;
    void click(const std::string& title) const;

    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> screen;
};

}  // namespace orvalo::testing
