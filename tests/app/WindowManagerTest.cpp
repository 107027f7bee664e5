#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/app/ApplicationFixture.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/WaitUntil.h"

// Last: its macros break other headers.
#include <X11/Xlib.h>

namespace orvalo::testing {

namespace {

struct Manager {
    std::string name;
    std::vector<std::string> command;
    std::string settings;  ///< The content of the file that the command names last.

    friend std::ostream& operator<<(std::ostream& stream, const Manager& manager) {
        return stream << manager.name;
    }
};

/// The application's keys where the pointer is over the plug-in UI, with plain window managers and
/// without one: those leave the focus on the toplevel, and the X server then offers keys to the
/// window under the pointer first.
class WindowManagerTest : public ApplicationFixture {
  protected:
    /// Starts the application and moves the pointer into its plug-in UI.
    void startWith(const Manager& manager) {
        auto command = manager.command;
        if (!manager.settings.empty()) {
            const auto file = folder.path() / "manager";
            writeBytes(file, manager.settings);
            command.push_back(file.string());
        }
        startDesktopWith(command);
        program = startAgain();
        EXPECT_EQ(lineWith(kEndOfSearch), kEndOfSearch);
        ASSERT_TRUE(pollUntil([this] { return tree.shows("Play"); }));
        const auto window = place();
        // Some managers focus the window below the pointer.
        act({"mousemove", std::to_string(window.x + window.width / 3),
             std::to_string(window.y + window.height - 30)});
        ASSERT_TRUE(tree.press("Effect"));
        ASSERT_TRUE(pollUntil([] { return effectPlace().has_value(); }))
            << program->standardError();
        pointAt({0.5, 0.3});
        ASSERT_TRUE(pollUntil(hasOwnFocus));
    }

    void quitByKey() {
        key("ctrl+q");
        EXPECT_EQ(program->wait(), 0);
    }

    static constexpr const char* kEndOfSearch = "WARNING: Audio unit is nil (yet?).";
};

class EachWindowManagerTest : public WindowManagerTest,
                              public ::testing::WithParamInterface<Manager> {
  protected:
    void SetUp() override { startWith(GetParam()); }
};

TEST_P(EachWindowManagerTest, KeysArriveBeforeAClickIntoThePluginUI) {
    playAndStop();
    quitByKey();
}

TEST_P(EachWindowManagerTest, KeysArriveAfterAClickIntoThePluginUI) {
    clickIntoField({0.5, 0.3});
    playAndStop();
    quitByKey();
}

TEST_F(WindowManagerTest, KeysFollowThePointerAgainAfterItLeavesThePluginUI) {
    startWith({"None", {}, ""});
    auto* display = XOpenDisplay(nullptr);
    const auto focus = [display] {
        Window result = None;
        int ignored = 0;
        XGetInputFocus(display, &result, &ignored);
        return result;
    };
    const auto window = place();
    act({"mousemove", "1270", "950"});
    XSetInputFocus(display, PointerRoot, RevertToPointerRoot, CurrentTime);
    XSync(display, False);
    pointAt({0.5, 0.3});
    EXPECT_TRUE(pollUntil(hasOwnFocus));
    playAndStop();
    act({"mousemove", "1270", "950"});
    EXPECT_TRUE(pollUntil([&] { return focus() == PointerRoot; }));
    act({"mousemove", std::to_string(window.x + 8), std::to_string(window.y + window.height - 8)});
    quitByKey();
    XCloseDisplay(display);
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, EachWindowManagerTest,
    ::testing::Values(Manager{"None", {}, ""}, Manager{"Openbox", {"openbox", "--sm-disable"}, ""},
                      // Otherwise twm waits for a click that places the window.
                      Manager{"Twm", {"twm", "-f"}, "RandomPlacement\n"},
                      Manager{"I3", {"i3", "-c"}, "font pango:monospace 8\n"}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace

}  // namespace orvalo::testing
