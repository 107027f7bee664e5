#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

class Frame : public LayoutFixture {
  protected:
    Frame() {
        show(screen);
        screen->view()->addSubview(container);
        container->setFrame({100, 50, 200, 100});
        container->addSubview(view);
    }

    /// The view's rectangle on screen, in the container's coordinates.
    CGRect drawn() const {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(view->widget(), container->widget(), &bounds)) {
            return {};
        }
        return {double{bounds.origin.x}, double{bounds.origin.y}, double{bounds.size.width},
                double{bounds.size.height}};
    }
    bool waitForDrawn(const CGRect& place) {
        return waitUntil([&] { return drawn() == place; });
    }
    /// Whether the view is visible at a point of the window's content.
    bool isSeenAt(double x, double y) const {
        return gtk_widget_pick(screen->view()->widget(), x, y, GTK_PICK_DEFAULT) == view->widget();
    }

    std::shared_ptr<WitnessScreen> screen = std::make_shared<WitnessScreen>("Screen");
    std::shared_ptr<UIView> container = std::make_shared<UIView>();
    std::shared_ptr<UIView> view = std::make_shared<UIView>();
};

TEST_F(Frame, IsEffectiveAtOnceAndInTheNextLayout) {
    view->setFrame({10, 20, 30, 40});
    EXPECT_EQ(view->frame(), CGRect(10, 20, 30, 40));
    EXPECT_EQ(view->bounds(), CGRect(0, 0, 30, 40));
    EXPECT_TRUE(waitForDrawn({10, 20, 30, 40}));
    EXPECT_EQ(view->frame(), CGRect(10, 20, 30, 40));
}

TEST_F(Frame, MayBeNegativeAndIsClipped) {
    view->setFrame({-20, -30, 60, 70});
    EXPECT_TRUE(waitForDrawn({-20, -30, 60, 70}));
    EXPECT_TRUE(isSeenAt(101, 51));
    EXPECT_TRUE(isSeenAt(139, 89));
    EXPECT_FALSE(isSeenAt(99, 51));
    EXPECT_FALSE(isSeenAt(101, 49));
}

TEST_F(Frame, MayBeLargerThanTheSuperviewAndIsClipped) {
    view->setFrame({-116.5, 0, 533.5, 400});
    EXPECT_EQ(view->frame(), CGRect(-116.5, 0, 533.5, 400));
    EXPECT_TRUE(waitUntil([this] { return drawn().size == CGSize{533, 400}; }));
    EXPECT_TRUE(isSeenAt(101, 51));
    EXPECT_TRUE(isSeenAt(299, 149));
    EXPECT_FALSE(isSeenAt(301, 149));
    EXPECT_FALSE(isSeenAt(299, 151));
    EXPECT_EQ(container->frame(), CGRect(100, 50, 200, 100));
}

TEST_F(Frame, StaysWhenTheSuperviewResizes) {
    view->setFrame({10, 20, 30, 40});
    EXPECT_TRUE(waitForDrawn({10, 20, 30, 40}));
    container->setFrame({0, 0, 400, 300});
    EXPECT_TRUE(waitUntil([this] { return gtk_widget_get_width(container->widget()) == 400; }));
    EXPECT_EQ(drawn(), CGRect(10, 20, 30, 40));
}

TEST_F(Frame, HidesAndShows) {
    view->setFrame({0, 0, 50, 50});
    EXPECT_TRUE(waitForDrawn({0, 0, 50, 50}));
    EXPECT_FALSE(view->isHidden());
    EXPECT_TRUE(isSeenAt(110, 60));
    view->setHidden(true);
    EXPECT_TRUE(view->isHidden());
    EXPECT_FALSE(isSeenAt(110, 60));
    view->setHidden(false);
    EXPECT_FALSE(view->isHidden());
    EXPECT_TRUE(waitUntil([this] { return isSeenAt(110, 60); }));
    EXPECT_EQ(view->frame(), CGRect(0, 0, 50, 50));
}

TEST_F(Frame, ComesFromTheLayoutWithoutTranslation) {
    view->setFrame({10, 20, 30, 40});
    EXPECT_TRUE(view->translatesAutoresizingMaskIntoConstraints());
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    EXPECT_FALSE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(waitUntil([this] { return view->frame() != CGRect(10, 20, 30, 40); }));
}

TEST_F(Frame, IsIgnoredWithoutTranslation) {
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    NSLayoutConstraint::activate({
        view->topAnchor().constraint(container->topAnchor()),
        view->leadingAnchor().constraint(container->leadingAnchor()),
        view->bottomAnchor().constraint(container->bottomAnchor()),
        view->trailingAnchor().constraint(container->trailingAnchor()),
    });
    const auto waitForWhole = [this](const CGRect& whole) {
        return waitUntil([&] { return view->bounds() == whole && view->frame() == whole; });
    };
    EXPECT_TRUE(waitForWhole({0, 0, 200, 100}));
    view->setFrame({10, 20, 30, 40});
    EXPECT_EQ(view->bounds(), CGRect(0, 0, 200, 100));
    container->setFrame({0, 0, 400, 300});
    EXPECT_TRUE(waitForWhole({0, 0, 400, 300}));
}

}  // namespace
}  // namespace orvalo::testing
