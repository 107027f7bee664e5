#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/app/AccessibleTree.h"
#include "tests/programs/play/Program.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

using Lines = std::vector<std::string>;

/// A window's place on the display, in pixels.
struct ApplicationPlace {
    int x;
    int y;
    int width;
    int height;
};

/// A place in the effect's UI, in parts of its extent from the top left.
struct EffectSpot {
    double x;
    double y;
};

/// The application on a display with a window manager and a session bus, without sound, with its
/// own effect and no other.
class ApplicationFixture : public ::testing::Test {
  protected:
    ApplicationFixture();

    /// Starts it and waits until the effect is found and the window drawn; returns all its lines.
    Lines start();
    /// The last of the lines up to the first that holds the text; "" when there is none.
    std::string lineWith(const std::string& text) const;
    /// A further start of it.
    std::unique_ptr<Program> startAgain() const;
    /// Has the keyboard go to its window, and the pointer away from it.
    static void focus();
    /// Types a key of xdotool's names into its window.
    static void key(const std::string& name);
    /// Starts the playing and ends it, by the space bar.
    void playAndStop();
    /// Closes the window and returns the exit status.
    int quit();

    /// The place of its window on the display.
    static ApplicationPlace place();
    static void resize(int width, int height);
    /// The place of the effect's embedded window on the display; absent while none is shown.
    static std::optional<ApplicationPlace> effectPlace();
    /// Moves the pointer into the effect's UI, which is shown.
    static void pointAt(const EffectSpot& spot);
    /// Clicks into a field of the effect's UI and waits until that has the keyboard.
    static void clickIntoField(const EffectSpot& spot);
    static int windowCount();

    static constexpr EffectSpot kThreshold{0.06, 0.68};
    static constexpr EffectSpot kThresholdsValue{0.06, 0.745};
    static constexpr EffectSpot kPresets{0.5, 0.036};
    static constexpr EffectSpot kPower{0.91, 0.036};

    Program::Environment environment;
    TemporaryFolder folder;
    std::unique_ptr<Program> program;
    const AccessibleTree tree{"orvalo-on-loopback"};
};

}  // namespace orvalo::testing
