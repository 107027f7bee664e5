#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIWindow.h"
#include "tests/platform/ui/TestScreens.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// A window on a display, and layouts in files.
class LayoutFixture : public ::testing::Test {
  protected:
    LayoutFixture();
    ~LayoutFixture() override;

    /// Writes the objects to a layout file and returns its path.
    std::string write(const std::string& objects) const;
    /// The layout of these objects: the XML inside <interface>.
    std::shared_ptr<UIStoryboard> layout(const std::string& objects) const;
    /// Shows a controller in the window and waits for its layout.
    void show(const std::shared_ptr<UIViewController>& controller);
    static void click(const UIView& button);

    /// Both screens and two segues from the first to the second: "ShowSecond" with the trigger
    /// "button", and "ShowAgain".
    static const std::string twoScreens;

    TemporaryFolder folder;
    std::shared_ptr<UIWindow> window;
};

}  // namespace orvalo::testing
