#include <X11/keysym.h>
#include <malloc.h>

#include <algorithm>
#include <filesystem>

#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::Parameter;
using Writes = std::vector<PortWrite>;

int errorsSeen = 0;
int countError(Display* /*display*/, XErrorEvent* /*error*/) {
    ++errorsSeen;
    return 0;
}

std::ptrdiff_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

class WindowLifeTest : public WindowFixture {
  protected:
    static void turnThreshold(HostWindow& window, const EmbeddedPluginUI& pluginUI) {
        const auto dial =
            orvalo::effect::ui::Rect(pluginUI.layout().cell(Parameter::threshold).dial);
        window.movePointer(dial.centerX(), dial.centerY());
        window.button(Button4, true);
        window.button(Button4, false);
    }
};

TEST_F(WindowLifeTest, NeedsOnlyAParent) {
    EmbeddedPluginUI pluginUI(host, {.all = false, .parent = host.id()});
    ASSERT_TRUE(pluginUI.isOpen());
    EXPECT_EQ(host.child(), pluginUI.window());
    pluginUI.settle();
    turnThreshold(host, pluginUI);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return !pluginUI.writes.empty(); }));
    EXPECT_EQ(pluginUI.writes, (Writes{{7, -17.0F}}));
    EXPECT_TRUE(pluginUI.touches.empty());
}

TEST_F(WindowLifeTest, DoesNotOpenWithoutAParent) {
    EXPECT_FALSE(EmbeddedPluginUI(host, {.parent = std::nullopt}).isOpen());
    EXPECT_FALSE(EmbeddedPluginUI(host, {.parent = 0x7FFFFFF}).isOpen());
}

TEST_F(WindowLifeTest, FindsPortsByTheirSymbols) {
    EmbeddedPluginUI pluginUI(host, {.shift = 100, .parent = host.id()});
    pluginUI.settle();
    turnThreshold(host, pluginUI);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return !pluginUI.writes.empty(); }));
    EXPECT_EQ(pluginUI.writes, (Writes{{107, -17.0F}}));
    EXPECT_EQ(pluginUI.touches, (std::vector<std::string>{"grab 107", "let 107"}));
}

TEST_F(WindowLifeTest, OpensForBothPlugInsOfTheBundleOnly) {
    const auto opens = [&](const char* plugin) {
        return EmbeddedPluginUI(host, {.parent = host.id(), .plugin = plugin}).isOpen();
    };
    EXPECT_TRUE(opens("urn:tessaly:orvalo"));
    EXPECT_TRUE(opens("urn:tessaly:orvalo:sidechain"));
    EXPECT_FALSE(opens("urn:example:other"));
}

TEST_F(WindowLifeTest, SubscribesToOutputPortsAndUnsubscribes) {
    EmbeddedPluginUI pluginUI(host);
    const std::vector<std::string> opened{"+20", "+21", "+22", "+23", "+24", "+25", "+31", "+32"};
    ASSERT_FALSE(pluginUI.subscriptions.empty());
    EXPECT_EQ(pluginUI.subscriptions.back(), "+1 http://lv2plug.in/ns/ext/atom#eventTransfer");
    pluginUI.subscriptions.pop_back();
    EXPECT_EQ(pluginUI.subscriptions, opened);
    pluginUI.subscriptions.clear();
    pluginUI.close();
    const std::vector<std::string> closed{"-20", "-21", "-22", "-23", "-24", "-25", "-31", "-32"};
    ASSERT_FALSE(pluginUI.subscriptions.empty());
    EXPECT_EQ(pluginUI.subscriptions.back(), "-1 http://lv2plug.in/ns/ext/atom#eventTransfer");
    pluginUI.subscriptions.pop_back();
    EXPECT_EQ(pluginUI.subscriptions, closed);
}

TEST_F(WindowLifeTest, TwoInstancesInOneProcessAreIndependent) {
    EmbeddedPluginUI one(host);
    one.settle();
    HostWindow second(640, 480);
    EmbeddedPluginUI other(second);
    other.settle();
    turnThreshold(second, other);
    ASSERT_TRUE(other.idleUntil([&] {
        one.idle();
        return !other.writes.empty();
    }));
    EXPECT_EQ(other.writes, (Writes{{7, -17.0F}}));
    EXPECT_TRUE(one.writes.empty());
    one.close();
    turnThreshold(second, other);
    EXPECT_TRUE(other.idleUntil([&] { return other.writes.size() == 2; }));
}

TEST_F(WindowLifeTest, EndsWithTheHostsWindow) {
    XErrorHandler former = XSetErrorHandler(countError);
    errorsSeen = 0;
    {
        EmbeddedPluginUI pluginUI(host);
        pluginUI.settle();
        EXPECT_EQ(pluginUI.idle(), 0);
        host.destroy();
        // Calls after the window is destroyed have no effect.
        pluginUI.send("threshold", -3.0F);
        pluginUI.resize(300, 300);
        ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.idle() != 0; }));
        EXPECT_NE(pluginUI.idle(), 0);
        pluginUI.send("threshold", -4.0F);
        EXPECT_NE(pluginUI.idle(), 0);
    }
    EXPECT_EQ(errorsSeen, 0);
    EXPECT_EQ(XSetErrorHandler(former), countError);
}

TEST_F(WindowLifeTest, ClosesItsWindowAtCleanup) {
    EmbeddedPluginUI pluginUI(host);
    pluginUI.settle();
    EXPECT_NE(host.child(), 0U);
    pluginUI.close();
    EXPECT_EQ(host.child(), 0U);
}

TEST_F(WindowLifeTest, OpeningAndClosingLeaksNothing) {
    const auto once = [&] {
        EmbeddedPluginUI pluginUI(host);
        pluginUI.settle();
    };
    once();
    once();
    malloc_trim(0);
    const auto files = openFiles();
    const auto used = mallinfo2().uordblks;
    for (int i = 0; i < 20; ++i) {
        once();
    }
    EXPECT_EQ(openFiles(), files);
    // One UI holds a picture of more than a megabyte, so a leak of one in twenty is visible.
    EXPECT_LT(static_cast<double>(mallinfo2().uordblks), static_cast<double>(used) + 50e3);
}

TEST(WindowServer, SurvivesTheEndOfTheServerIfTheHostDoes) {
    // In a separate process, because the error handler applies to the whole process.
    const auto loseServer = [] {
        XServer server;
        HostWindow window(800, 600);
        XSetIOErrorHandler([](Display* /*display*/) { return 0; });
        XSetIOErrorExitHandler(
            window.display(), [](Display* /*display*/, void* /*data*/) {}, nullptr);
        EmbeddedPluginUI pluginUI(window);
        pluginUI.settle();
        server.crash();
        bool ended = false;
        for (int i = 0; i < 1000 && !ended; ++i) {
            pluginUI.send("threshold", -3.0F);
            ended = pluginUI.idle() != 0;
        }
        pluginUI.close();
        _exit(ended ? 7 : 8);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(loseServer(), ::testing::ExitedWithCode(7), "");
}

}  // namespace
