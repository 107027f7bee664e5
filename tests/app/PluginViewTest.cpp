#include <gtk/gtk.h>

#include <cmath>
#include <limits>

#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

namespace {

class PluginViewTest : public ScreenFixture {
  protected:
    PluginViewTest() : screen(showMainScreen()) {}

    void giveEffect() {
        effect = std::make_shared<UIViewController>(std::nullopt, nullptr);
        ViewControllerPeer::effectController(*screen) = effect;
    }
    CGRect stage() const { return screen->view()->bounds(); }

    std::shared_ptr<ViewController> screen;
    std::shared_ptr<UIViewController> effect;
};

TEST_F(PluginViewTest, WithoutAPluginUINothingChanges) {
    const auto before = screen->pluginView->frame();
    const CapturedOutput output;
    ViewControllerPeer::resetPluginView(*screen, 400, 300);
    screen->centerPluginView();
    EXPECT_EQ(output.lines(), (Lines{"WARNING: Cannot reset the pluginview (yet).",
                                     "WARNING: Cannot reset the pluginview (yet)."}));
    EXPECT_EQ(screen->pluginView->frame(), before);
    EXPECT_EQ(screen->audioUnitView(), nullptr);
}

TEST_F(PluginViewTest, APortraitOverflowsBothSides) {
    giveEffect();
    ViewControllerPeer::resetPluginView(*screen, 300, 600);
    const auto middle = stage().size.width * 0.5;
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{middle - 400, 0, 800, 600}));
    EXPECT_EQ(effect->view()->frame(), (CGRect{0, 0, 800, 600}));
}

TEST_F(PluginViewTest, ALandscapeOverflowsAboveAndBelow) {
    giveEffect();
    ViewControllerPeer::resetPluginView(*screen, 2000, 300);
    const auto middle = stage().size.height * 0.5;
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{0, middle - 750, 2000, 1500}));
    EXPECT_EQ(effect->view()->frame(), (CGRect{0, 0, 2000, 1500}));
}

TEST_F(PluginViewTest, ASquareIsALandscape) {
    giveEffect();
    ViewControllerPeer::resetPluginView(*screen, 400, 400);
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{0, stage().size.height * 0.5 - 150, 400, 300}));
}

TEST_F(PluginViewTest, FourSizesHaveTheirPlaces) {
    giveEffect();
    struct Case {
        double width, height;
        CGRect place;
    };
    screen->view()->setFrame({0, 0, 300, 600});
    ASSERT_EQ(stage().size.width, 300);
    ASSERT_EQ(stage().size.height, 600);
    for (const auto& [width, height, place] :
         {Case{300, 400, {300 * 0.5 - 400 / 0.75 * 0.5, 0, 400 / 0.75, 400}},
          Case{800, 600, {0, 0, 800, 600}}, Case{1000, 600, {0, -75, 1000, 750}},
          Case{600, 600, {0, 75, 600, 450}}}) {
        ViewControllerPeer::resetPluginView(*screen, width, height);
        EXPECT_EQ(screen->pluginView->frame(), place);
        EXPECT_EQ(effect->view()->frame(), (CGRect{0, 0, place.size.width, place.size.height}));
    }
}

TEST_F(PluginViewTest, NaNCountsAsLandscape) {
    giveEffect();
    const auto none = std::numeric_limits<double>::quiet_NaN();
    ViewControllerPeer::resetPluginView(*screen, 400, none);
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{0, stage().size.height * 0.5 - 150, 400, 300}));
    ViewControllerPeer::resetPluginView(*screen, none, 400);
    EXPECT_TRUE(std::isnan(screen->pluginView->frame().size.width));
}

TEST_F(PluginViewTest, CentringFitsTheScreen) {
    giveEffect();
    screen->centerPluginView();
    const auto size = stage().size;
    ASSERT_GE(size.width, size.height);
    EXPECT_EQ(screen->pluginView->frame(),
              (CGRect{0, size.height * 0.5 - size.width * 0.375, size.width, size.width * 0.75}));
}

TEST_F(PluginViewTest, EmbeddingWithoutAViewControllerEndsTheProgram) {
    EXPECT_DEATH(ViewControllerPeer::embedPlugInView(*screen),
                 "Fatal error: ERROR: Could not load audio unit's view controller.");
}

}  // namespace

}  // namespace orvalo::testing
