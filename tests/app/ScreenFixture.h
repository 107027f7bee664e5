#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "app/HelpViewController.h"
#include "app/ViewController.h"
#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIWindow.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/Lines.h"

namespace orvalo {

/// Access to the main screen's private members.
struct ViewControllerPeer {
    static auto& manager(ViewController& screen) { return screen.audioUnitManager; }
    static auto& effectController(ViewController& screen) { return screen.audioUnitViewController; }
    static auto& documentsPath(ViewController& screen) { return screen.documentsPath; }
    static const std::string& sharedPath(const ViewController& screen) { return screen.sharedPath; }
    static auto& resourcesPath(ViewController& screen) { return screen.resourcesPath; }
    static void getDirectories(ViewController& screen) { screen.getDirectories(); }
    static void embedPlugInView(ViewController& screen) { screen.embedPlugInView(); }
    static void resetPluginView(ViewController& screen, double w, double h) {
        screen.resetPluginView(w, h);
    }
};

/// Access to the help screen's private members.
struct HelpViewControllerPeer {
    static const std::string& identifier(const HelpViewController& screen) {
        return screen.identifier;
    }
};

}  // namespace orvalo

namespace orvalo::testing {

/// The screens of the application's layout, on a display.
class ScreenFixture : public ::testing::Test {
  protected:
    ScreenFixture();
    ~ScreenFixture() override;

    /// Shows the main screen and waits until the search for the effect has ended.
    std::shared_ptr<ViewController> showMainScreen();
    /// The layout, with the application's classes registered.
    static std::shared_ptr<UIStoryboard> layout();
    /// Waits until the window has the keyboard focus; with false, until a dialog above it has.
    void waitForKeyboard(bool isWindows) const;
    /// Runs the items that the main queue holds at the call.
    static void serveMainQueue();

    std::shared_ptr<UIWindow> window;
};

}  // namespace orvalo::testing
