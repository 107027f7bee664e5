#include "platform/plugin-ui/x11/X11Container.h"

#include <gtest/gtest.h>

// After GoogleTest: None is a macro.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/platform/plugin-ui/x11/Toplevel.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

class Container : public ::testing::Test {
  protected:
    Window makeChild() const {
        const auto child =
            XCreateSimpleWindow(screen(), container_->window(), 0, 0, 100, 80, 0, 0, 0);
        XSync(screen(), False);
        return child;
    }
    static void setMinimumSize(Window window, int width, int height) {
        XSizeHints hints{};
        hints.flags = PMinSize;
        hints.min_width = width;
        hints.min_height = height;
        XSetWMNormalHints(screen(), window, &hints);
        XSync(screen(), False);
    }

    Toplevel toplevel_;
    const std::shared_ptr<X11Connection> connection_ = X11Connection::open("");
    std::unique_ptr<X11Container> container_ =
        std::make_unique<X11Container>(connection_, toplevel_.window(), X11Size{100, 80});
};

TEST_F(Container, FollowsTheHintsOfTheLastAdoptedWindow) {
    const auto first = makeChild();
    container_->adopt(first);
    const auto second = makeChild();
    container_->adopt(second);
    setMinimumSize(first, 50, 40);
    setMinimumSize(second, 30, 20);
    EXPECT_TRUE(pollUntil([this] { return container_->rules().smallest == X11Size{30, 20}; }));
    int changes = 0;
    container_->onRules = [&changes] { ++changes; };
    setMinimumSize(first, 60, 50);
    setMinimumSize(second, 35, 25);
    EXPECT_TRUE(pollUntil([this] { return container_->rules().smallest == X11Size{35, 25}; }));
    EXPECT_EQ(changes, 1);
}

}  // namespace
