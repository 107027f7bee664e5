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
    static void turnThreshold(HostWindow& window, const EmbeddedPluginUI& interface) {
        const auto dial =
            orvalo::effect::ui::Rect(interface.layout().cell(Parameter::threshold).dial);
        window.movePointer(dial.centerX(), dial.centerY());
        window.button(Button4, true);
        window.button(Button4, false);
    }
};

TEST_F(WindowLifeTest, AParentIsAllItNeeds) {
    EmbeddedPluginUI interface(host, {.all = false, .parent = host.id()});
    ASSERT_TRUE(interface.isOpen());
    EXPECT_EQ(host.child(), interface.window());
    interface.settle();
    turnThreshold(host, interface);
    ASSERT_TRUE(interface.idleUntil([&] { return !interface.writes.empty(); }));
    EXPECT_EQ(interface.writes, (Writes{{7, -17.0F}}));
    EXPECT_TRUE(interface.touches.empty());
}

TEST_F(WindowLifeTest, WithoutAParentItDoesNotOpen) {
    EXPECT_FALSE(EmbeddedPluginUI(host, {.parent = std::nullopt}).isOpen());
    EXPECT_FALSE(EmbeddedPluginUI(host, {.parent = 0x7FFFFFF}).isOpen());
}

TEST_F(WindowLifeTest, PortsAreFoundByTheirSymbols) {
    EmbeddedPluginUI interface(host, {.shift = 100, .parent = host.id()});
    interface.settle();
    turnThreshold(host, interface);
    ASSERT_TRUE(interface.idleUntil([&] { return !interface.writes.empty(); }));
    EXPECT_EQ(interface.writes, (Writes{{107, -17.0F}}));
    EXPECT_EQ(interface.touches, (std::vector<std::string>{"grab 107", "let 107"}));
}

TEST_F(WindowLifeTest, WhatTheEffectShowsIsSubscribedAndLetGo) {
    EmbeddedPluginUI interface(host);
    const std::vector<std::string> opened{"+20", "+21", "+22", "+23", "+24", "+25"};
    EXPECT_EQ(interface.subscriptions, opened);
    interface.subscriptions.clear();
    interface.close();
    const std::vector<std::string> closed{"-20", "-21", "-22", "-23", "-24", "-25"};
    EXPECT_EQ(interface.subscriptions, closed);
}

TEST_F(WindowLifeTest, TwoInOneProcessAreTwo) {
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

TEST_F(WindowLifeTest, ItEndsWithTheHostsWindow) {
    XErrorHandler former = XSetErrorHandler(countError);
    errorsSeen = 0;
    {
        EmbeddedPluginUI interface(host);
        interface.settle();
        EXPECT_EQ(interface.idle(), 0);
        host.destroy();
        // Whatever is asked of the window that has gone does no harm.
        interface.send("threshold", -3.0F);
        interface.resize(300, 300);
        ASSERT_TRUE(interface.idleUntil([&] { return interface.idle() != 0; }));
        EXPECT_NE(interface.idle(), 0);
        interface.send("threshold", -4.0F);
        EXPECT_NE(interface.idle(), 0);
    }
    EXPECT_EQ(errorsSeen, 0);
    EXPECT_EQ(XSetErrorHandler(former), countError);
}

TEST_F(WindowLifeTest, TheWindowGoesWithThePluginUI) {
    EmbeddedPluginUI interface(host);
    interface.settle();
    EXPECT_NE(host.child(), 0U);
    interface.close();
    EXPECT_EQ(host.child(), 0U);
}

TEST_F(WindowLifeTest, OpeningAndClosingLeavesNothing) {
    const auto once = [&] {
        EmbeddedPluginUI interface(host);
        interface.settle();
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
    // One interface holds a picture of more than a megabyte; a leak of one in twenty would show.
    EXPECT_LT(static_cast<double>(mallinfo2().uordblks), static_cast<double>(used) + 50e3);
}

TEST(WindowServer, ItSurvivesTheEndOfItsServerWhereTheHostDoes) {
    // In a process of its own, because the handler holds for all of it.
    const auto loseServer = [] {
        XServer server;
        HostWindow window(800, 600);
        XSetIOErrorHandler([](Display* /*display*/) { return 0; });
        XSetIOErrorExitHandler(
            window.display(), [](Display* /*display*/, void* /*data*/) {}, nullptr);
        EmbeddedPluginUI interface(window);
        interface.settle();
        server.crash();
        bool ended = false;
        for (int i = 0; i < 1000 && !ended; ++i) {
            interface.send("threshold", -3.0F);
            ended = interface.idle() != 0;
        }
        interface.close();
        _exit(ended ? 7 : 8);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(loseServer(), ::testing::ExitedWithCode(7), "");
}

}  // namespace
