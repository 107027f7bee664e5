#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "tests/app/AccessibleTree.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/Lines.h"
#include "tests/testing/Program.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// A window's rectangle on the display, in pixels.
struct ApplicationPlace {
    int x;
    int y;
    int width;
    int height;
};

/// A point in the plug-in UI, in fractions of its size from the top left.
struct EffectSpot {
    double x;
    double y;
};

/// The application on a display with a window manager and a session bus, without sound, with only
/// its own effect.
class ApplicationFixture : public ::testing::Test {
  protected:
    ApplicationFixture();
    /// Prints the application's standard error after a failure.
    void TearDown() override;

    /// Starts the application, waits until the effect is found and the window drawn, and returns
    /// the printed lines.
    Lines start();
    /// Reads the application's lines up to the next that contains the text. Returns that line.
    std::string lineWith(const std::string& text) const;
    /// Starts the application's program once more.
    std::unique_ptr<Program> startAgain() const;
    /// Makes start() start an installation without an effect, in installed().
    void installWithoutEffect();
    std::filesystem::path installed() const { return folder.path() / "installed"; }
    /// Focuses the application's window and moves the pointer off it.
    static void focus();
    /// Sends a key, by its xdotool name, to the application's window.
    static void key(const std::string& name);
    /// Starts and stops playback by the space bar.
    void playAndStop();
    /// Closes the window and returns the application's exit status.
    int quit();

    /// The rectangle of the application's window on the display.
    static ApplicationPlace place();
    static void resize(int width, int height);
    /// The rectangle of the embedded plug-in UI on the display; absent while it is hidden.
    static std::optional<ApplicationPlace> effectPlace();
    /// Moves the pointer into the visible plug-in UI.
    static void pointAt(const EffectSpot& spot);
    /// Clicks into a field of the plug-in UI and waits until it has the keyboard focus.
    static void clickIntoField(const EffectSpot& spot);
    /// Whether the keyboard focus is in the application's window, but neither in the plug-in UI nor
    /// where the pointer could hand keys to it.
    static bool hasOwnFocus();
    static int windowCount();

    static constexpr EffectSpot kThreshold{0.06, 0.68};
    static constexpr EffectSpot kThresholdsValue{0.06, 0.745};
    static constexpr EffectSpot kPresets{0.5, 0.036};
    static constexpr EffectSpot kPower{0.91, 0.036};

    /// The application's path.
    std::string executable;
    Program::Environment environment;
    TemporaryFolder folder;
    std::unique_ptr<Program> program;
    const AccessibleTree tree{"orvalo-on-loopback"};
};

}  // namespace orvalo::testing
