#include <gtest/gtest.h>

#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

using Events = std::vector<std::string>;

class Containment : public LayoutFixture {
  protected:
    std::shared_ptr<WitnessScreen> parent = std::make_shared<WitnessScreen>("Parent");
    std::shared_ptr<WitnessScreen> child = std::make_shared<WitnessScreen>("Child");
};

TEST_F(Containment, KeepsItsChildren) {
    parent->addChild(child);
    EXPECT_EQ(parent->children(), (std::vector<std::shared_ptr<UIViewController>>{child}));
    EXPECT_EQ(child->parent(), parent);
    EXPECT_EQ(child->next(), parent);
    child->removeFromParent();
    EXPECT_TRUE(parent->children().empty());
    EXPECT_EQ(child->parent(), nullptr);
}

TEST_F(Containment, MovesAChildFromItsFormerParent) {
    const auto other = std::make_shared<WitnessScreen>("Other");
    other->addChild(child);
    parent->addChild(child);
    EXPECT_TRUE(other->children().empty());
    EXPECT_EQ(child->parent(), parent);
}

TEST_F(Containment, SharesItsWindowAndItsAppearance) {
    show(parent);
    events().clear();
    parent->addChild(child);
    parent->view()->addSubview(child->view());
    child->didMove(parent);
    EXPECT_EQ(events(), (Events{"Child viewDidLoad", "Child viewWillAppear"}));
    EXPECT_EQ(child->window(), window);
    EXPECT_TRUE(waitUntil([this] { return child->layouts > 0; }));
    events().clear();
    const auto above = std::make_shared<WitnessScreen>("Above");
    bool isShown = false;
    parent->present(above, false, [&isShown] { isShown = true; });
    ASSERT_TRUE(waitUntil([&isShown] { return isShown; }));
    EXPECT_EQ(events(), (Events{"Above viewDidLoad", "Above viewWillAppear",
                                "Parent viewDidDisappear", "Child viewDidDisappear"}));
}

}  // namespace
}  // namespace orvalo::testing
