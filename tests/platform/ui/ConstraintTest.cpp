#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/ui/LayoutFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

class Constraint : public LayoutFixture {
  protected:
    Constraint() {
        show(screen);
        screen->view()->addSubview(container);
        container->setFrame({0, 0, 300, 200});
        for (const auto& view : {a, b}) {
            container->addSubview(view);
            view->setTranslatesAutoresizingMaskIntoConstraints(false);
        }
    }

    std::shared_ptr<WitnessScreen> screen = std::make_shared<WitnessScreen>("Screen");
    std::shared_ptr<UIView> container = std::make_shared<UIView>();
    std::shared_ptr<UIView> a = std::make_shared<UIView>();
    std::shared_ptr<UIView> b = std::make_shared<UIView>();
};

TEST_F(Constraint, PlacesViewsByTheirEdges) {
    NSLayoutConstraint::activate({
        a->topAnchor().constraint(container->topAnchor()),
        a->leadingAnchor().constraint(container->leadingAnchor()),
        a->bottomAnchor().constraint(container->bottomAnchor()),
        a->trailingAnchor().constraint(container->trailingAnchor()),
        b->topAnchor().constraint(a->topAnchor()),
        b->leadingAnchor().constraint(a->leadingAnchor()),
        b->bottomAnchor().constraint(a->bottomAnchor()),
        b->trailingAnchor().constraint(a->trailingAnchor()),
    });
    const CGRect whole(0, 0, 300, 200);
    EXPECT_TRUE(waitUntil([&] { return a->frame() == whole && b->frame() == whole; }));
    EXPECT_EQ(a->bounds(), whole);
    container->setFrame({0, 0, 120, 90});
    const CGRect smaller(0, 0, 120, 90);
    EXPECT_TRUE(waitUntil([&] { return a->frame() == smaller && b->frame() == smaller; }));
}

TEST_F(Constraint, HoldsOnlyAfterActivation) {
    const auto constraint = a->topAnchor().constraint(container->topAnchor());
    EXPECT_TRUE(container->constraints().empty());
    NSLayoutConstraint::activate({constraint});
    NSLayoutConstraint::activate({constraint});
    EXPECT_EQ(container->constraints(),
              std::vector<std::shared_ptr<NSLayoutConstraint>>{constraint});
}

TEST_F(Constraint, IsRemovedWithItsViewAlsoOutsideAWindow) {
    const auto around = std::make_shared<UIView>();
    const auto child = std::make_shared<UIView>();
    const auto other = std::make_shared<UIView>();
    for (const auto& view : {child, other}) {
        around->addSubview(view);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        NSLayoutConstraint::activate({
            view->topAnchor().constraint(around->topAnchor()),
            view->leadingAnchor().constraint(around->leadingAnchor()),
            view->bottomAnchor().constraint(around->bottomAnchor()),
            view->trailingAnchor().constraint(around->trailingAnchor()),
        });
    }
    const CapturedOutput errors(2);
    child->removeFromSuperview();
    EXPECT_EQ(errors.text(), "");
    EXPECT_EQ(around->constraints().size(), 4U);
    // The remaining constraints still hold in a window.
    container->addSubview(around);
    around->setFrame({0, 0, 80, 60});
    EXPECT_TRUE(waitUntil([&] { return other->frame() == CGRect(0, 0, 80, 60); }));
    other->removeFromSuperview();
    EXPECT_EQ(errors.text(), "");
    EXPECT_TRUE(around->constraints().empty());
}

using ConstraintDeathTest = Constraint;

TEST_F(ConstraintDeathTest, NeedsACommonSuperview) {
    const auto alone = std::make_shared<UIView>();
    const auto* expected =
        "Fatal error: NSLayoutConstraint\\.activate: the two views have no common superview\\.";
    EXPECT_EXIT(NSLayoutConstraint::activate({alone->topAnchor().constraint(a->topAnchor())}),
                ::testing::KilledBySignal(SIGABRT), expected);
    EXPECT_EXIT(
        NSLayoutConstraint::activate({a->topAnchor().constraint(screen->view()->topAnchor())}),
        ::testing::KilledBySignal(SIGABRT), expected);
}

}  // namespace
}  // namespace orvalo::testing
