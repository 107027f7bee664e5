#include "support/view/PinToSuperviewEdges.h"

#include <gtest/gtest.h>

#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/ui/PresenterFixture.h"

namespace orvalo::testing {
namespace {

using Attribute = NSLayoutAnchor::Attribute;

class PinToSuperviewEdges : public PresenterFixture {
  protected:
    std::shared_ptr<UIView> container = std::make_shared<UIView>();
    std::shared_ptr<UIView> view = std::make_shared<UIView>();
};

TEST_F(PinToSuperviewEdges, ChangesNothingWithoutASuperview) {
    pinToSuperviewEdges(*view);
    EXPECT_TRUE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(view->constraints().empty());
}

TEST_F(PinToSuperviewEdges, ConstrainsTheFourEdgesInOrder) {
    container->addSubview(view);
    pinToSuperviewEdges(*view);
    EXPECT_FALSE(view->translatesAutoresizingMaskIntoConstraints());
    const std::vector<Attribute> order{Attribute::top, Attribute::leading, Attribute::bottom,
                                       Attribute::trailing};
    ASSERT_EQ(container->constraints().size(), order.size());
    for (std::size_t index = 0; index < order.size(); ++index) {
        const auto& constraint = *container->constraints()[index];
        EXPECT_EQ(constraint.firstAnchor().view(), view);
        EXPECT_EQ(constraint.firstAnchor().attribute(), order[index]);
        EXPECT_EQ(constraint.secondAnchor().view(), container);
        EXPECT_EQ(constraint.secondAnchor().attribute(), order[index]);
    }
}

TEST_F(PinToSuperviewEdges, AddsItsConstraintsEveryTime) {
    container->addSubview(view);
    pinToSuperviewEdges(*view);
    pinToSuperviewEdges(*view);
    EXPECT_EQ(container->constraints().size(), 8U);
}

TEST_F(PinToSuperviewEdges, MakesTheViewFillAndFollowItsSuperview) {
    screen->view()->addSubview(container);
    container->setFrame({10, 20, 300, 200});
    container->addSubview(view);
    view->setFrame({5, 5, 50, 50});
    pinToSuperviewEdges(*view);
    EXPECT_TRUE(waitUntil([this] { return view->frame() == CGRect(0, 0, 300, 200); }));
    container->setFrame({-10, 0, 411, 123});
    EXPECT_TRUE(waitUntil([this] { return view->frame() == CGRect(0, 0, 411, 123); }));
}

}  // namespace
}  // namespace orvalo::testing
