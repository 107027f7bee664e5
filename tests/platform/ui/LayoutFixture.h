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

    /// The file's path, once the objects are in it.
    std::string write(const std::string& objects) const;
    /// The layout of these objects, which are XML inside <interface>.
    std::shared_ptr<UIStoryboard> layout(const std::string& objects) const;
    /// Shows a controller in the window and waits until it was laid out.
    void show(const std::shared_ptr<UIViewController>& controller);
    static void click(const UIView& button);

    /// A layout of both screens, with two segues from the first to the second: "ShowSecond", which
    /// "button" takes, and "ShowAgain".
    static const std::string twoScreens;

    TemporaryFolder folder;
    std::shared_ptr<UIWindow> window;
};

}  // namespace orvalo::testing
