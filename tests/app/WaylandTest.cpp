#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/app/AccessibleTree.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/Lines.h"
#include "tests/testing/Program.h"
#include "tests/testing/SessionBus.h"
#include "tests/testing/Staged.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"
#include "tests/testing/WaylandServer.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

/// The application on a Wayland compositor.
class WaylandTest : public ::testing::Test {
  protected:
    void start(WaylandServer::X11 x11) {
        // First: starting the bus unsets XDG_RUNTIME_DIR.
        startSessionBus();
        server_ = std::make_unique<WaylandServer>(x11);
        program_ = std::make_unique<Program>(
            std::vector<std::string>{ORVALO_TEST_STAGE "/bin/orvalo-on-loopback"},
            Program::Environment{{"ORVALO_AUDIO_OUTPUT", "null"},
                                 {"LV2_PATH", "/nowhere"},
                                 {"GTK_A11Y", "atspi"},
                                 {"HOME", folder_.path().string()},
                                 {"XDG_DATA_HOME", (folder_.path() / "data").string()},
                                 {"XDG_CONFIG_HOME", (folder_.path() / "config").string()}});
        EXPECT_TRUE(pollUntil([this] { return tree_.shows("Play"); }));
        // The last line of the search for the effect.
        EXPECT_THAT(program_->readUntil(kEndOfSearch), Contains(kEndOfSearch));
        if (x11 == WaylandServer::X11::xwayland) {
            WaylandServer::showX11Window("Orvalo");
        }
        EXPECT_TRUE(pollUntil([this] { return tree_.isActive(); }));
    }

    /// By the space bar.
    void playAndStop() {
        WaylandServer::type({"-k", "space"});
        EXPECT_THAT(program_->readUntil("AUEnginePlayer: Audio engine starting."),
                    Contains("AUEnginePlayer: Audio engine starting."));
        WaylandServer::type({"-k", "space"});
        EXPECT_THAT(program_->readUntil("AUEnginePlayer: Audio engine stopping."),
                    Contains("AUEnginePlayer: Audio engine stopping."));
    }

    void quitByKey() {
        WaylandServer::type({"-M", "ctrl", "-k", "q"});
        EXPECT_EQ(program_->wait(), 0);
    }

    /// Whether the stage has the dark colours of a shown effect.
    bool isStageDark() {
        const Screenshot now(server_->picture());
        int dark = 0;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x) {
                const auto color = now.at(x, y);
                dark += (color >> 16U) < 0x30 && ((color >> 8U) & 0xFFU) < 0x30 ? 1 : 0;
            }
        }
        return dark > 400'000;
    }

    /// The last line of the search for the effect.
    static constexpr const char* kEndOfSearch = "WARNING: Audio unit is nil (yet?).";

    TemporaryFolder folder_;
    std::unique_ptr<WaylandServer> server_;
    std::unique_ptr<Program> program_;
    const AccessibleTree tree_{"orvalo-on-loopback"};
};

TEST_F(WaylandTest, WithoutXwaylandItPlaysAndSaysWhyThereIsNoPluginUI) {
    start(WaylandServer::X11::none);
    playAndStop();
    EXPECT_FALSE(isStageDark());
    ASSERT_TRUE(tree_.press("Effect"));
    const std::string reason =
        "it is an X11 window, and this desktop has no X server (on Wayland, install Xwayland).";
    EXPECT_TRUE(pollUntil([&] {
        return ::testing::Matches(
            Contains("The UI of <urn:tessaly:orvalo> cannot be shown: " + reason))(tree_.names());
    }));
    EXPECT_THAT(tree_.names(), Contains("Threshold"));
    EXPECT_THAT(program_->standardError(),
                HasSubstr("The UI of <urn:tessaly:orvalo> cannot be shown: " + reason));
    playAndStop();
    quitByKey();
}

TEST_F(WaylandTest, WithXwaylandThePluginUIIsShownAndKeysArriveOverIt) {
    start(WaylandServer::X11::xwayland);
    playAndStop();
    ASSERT_TRUE(tree_.press("Effect"));
    EXPECT_TRUE(pollUntil([this] { return isStageDark(); }));
    EXPECT_THAT(tree_.names(), Not(Contains(HasSubstr("cannot be shown"))));
    EXPECT_THAT(program_->standardError(), Not(HasSubstr("cannot be shown")));
    WaylandServer::pointAt(640, 400);
    playAndStop();
    WaylandServer::click();
    playAndStop();
    quitByKey();
}

TEST_F(WaylandTest, LessMotionIsThePortals) {
    startSessionBus();
    server_ = std::make_unique<WaylandServer>(WaylandServer::X11::none);
    Program portal({ORVALO_TEST_STAGE "/bin/fake-portal", "0", "false", "/"});
    EXPECT_EQ(portal.readUntil("ready"), Lines{"ready"});
    const Program easing({staged("orvalo-easing")},
                         {{"GDK_DEBUG", "portals"}, {"GTK_A11Y", "atspi"}});
    const AccessibleTree tree("orvalo-easing");
    EXPECT_TRUE(pollUntil([&] {
        return ::testing::Matches(
            Contains("The desktop asks for less motion: only the end of each movement is shown."))(
            tree.names());
    }));
}

}  // namespace

}  // namespace orvalo::testing
