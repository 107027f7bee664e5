#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

using Views = std::vector<std::shared_ptr<UIView>>;

class ViewTree : public LayoutFixture {
  protected:
    std::shared_ptr<UIView> around = std::make_shared<UIView>();
    std::shared_ptr<UIView> a = std::make_shared<UIView>();
    std::shared_ptr<UIView> b = std::make_shared<UIView>();
};

TEST_F(ViewTree, KeepsSubviewsInOrder) {
    around->addSubview(a);
    around->addSubview(b);
    EXPECT_EQ(around->subviews(), (Views{a, b}));
    EXPECT_EQ(a->superview(), around);
    EXPECT_EQ(a->next(), around);
    EXPECT_EQ(around->superview(), nullptr);
    around->addSubview(a);
    EXPECT_EQ(around->subviews(), (Views{b, a}));
}

TEST_F(ViewTree, MovesAViewFromItsFormerSuperview) {
    const auto other = std::make_shared<UIView>();
    other->addSubview(a);
    around->addSubview(a);
    EXPECT_TRUE(other->subviews().empty());
    EXPECT_EQ(a->superview(), around);
}

TEST_F(ViewTree, ReleasesARemovedViewAndItsConstraints) {
    const auto screen = std::make_shared<WitnessScreen>("Screen");
    show(screen);
    screen->view()->addSubview(around);
    around->addSubview(a);
    around->addSubview(b);
    NSLayoutConstraint::activate({a->topAnchor().constraint(around->topAnchor()),
                                  b->topAnchor().constraint(around->topAnchor()),
                                  a->leadingAnchor().constraint(b->leadingAnchor())});
    EXPECT_EQ(around->constraints().size(), 3U);
    a->removeFromSuperview();
    EXPECT_EQ(around->subviews(), Views{b});
    EXPECT_EQ(a->superview(), nullptr);
    ASSERT_EQ(around->constraints().size(), 1U);
    EXPECT_EQ(around->constraints().front()->firstAnchor().view(), b);
    const std::weak_ptr<UIView> left = a;
    a.reset();
    EXPECT_TRUE(left.expired());
}

TEST_F(ViewTree, KeepsItsSubviewsAliveAndReleasesThem) {
    const std::weak_ptr<UIView> inner = a;
    around->addSubview(a);
    a.reset();
    EXPECT_FALSE(inner.expired());
    around.reset();
    EXPECT_TRUE(inner.expired());
}

TEST_F(ViewTree, IsFoundByItsWidget) {
    EXPECT_EQ(UIView::of(a->widget()), a);
    auto* label = gtk_label_new("text");
    g_object_ref_sink(label);
    const auto view = UIView::of(label);
    EXPECT_EQ(UIView::of(label), view);
    EXPECT_EQ(view->widget(), label);
    g_object_unref(label);
}

using ViewTreeDeathTest = ViewTree;

TEST_F(ViewTreeDeathTest, AddsNothingToAControl) {
    const auto button = std::make_shared<UIButton>(gtk_button_new());
    EXPECT_EXIT(button->addSubview(a), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: UIView\\.addSubview: a view over a GtkButton holds no "
                "subviews\\.");
}

}  // namespace
}  // namespace orvalo::testing
