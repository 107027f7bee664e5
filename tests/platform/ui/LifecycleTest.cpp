#include <gtest/gtest.h>

#include "tests/platform/ui/LayoutFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using Events = std::vector<std::string>;

class Lifecycle : public LayoutFixture {
  protected:
    std::shared_ptr<WitnessScreen> a = std::make_shared<WitnessScreen>("A");
    std::shared_ptr<WitnessScreen> b = std::make_shared<WitnessScreen>("B");

    void present(bool animated) {
        bool isShown = false;
        a->present(b, animated, [&isShown] { isShown = true; });
        ASSERT_TRUE(waitUntil([&isShown] { return isShown; }));
    }
    static void dismiss(const std::shared_ptr<UIViewController>& controller, bool animated) {
        bool isGone = false;
        controller->dismiss(animated, [&isGone] { isGone = true; });
        ASSERT_TRUE(waitUntil([&isGone] { return isGone; }));
    }
};

TEST_F(Lifecycle, LoadsAppearsAndIsLaidOut) {
    EXPECT_FALSE(a->isViewLoaded());
    show(a);
    EXPECT_TRUE(a->isViewLoaded());
    EXPECT_EQ(events(), (Events{"A viewDidLoad", "A viewWillAppear"}));
    EXPECT_TRUE(waitUntil([this] { return a->layouts > 0; }));
    EXPECT_EQ(a->view()->bounds(), CGRect(0, 0, 640, 480));
    EXPECT_EQ(a->window(), window);
}

TEST_F(Lifecycle, LoadsItsViewOnce) {
    const auto view = a->view();
    EXPECT_EQ(a->view(), view);
    EXPECT_EQ(events(), Events{"A viewDidLoad"});
}

TEST_F(Lifecycle, DisappearsBehindAPresentedScreenAndReappears) {
    show(a);
    events().clear();
    present(true);
    EXPECT_EQ(events(), (Events{"B viewDidLoad", "B viewWillAppear animated",
                                "A viewDidDisappear animated"}));
    EXPECT_EQ(b->window(), window);
    events().clear();
    dismiss(b, true);
    EXPECT_EQ(events(), (Events{"A viewWillAppear animated", "B viewDidDisappear animated"}));
    EXPECT_EQ(a->presentedViewController(), nullptr);
    EXPECT_EQ(b->presentingViewController(), nullptr);
    EXPECT_EQ(b->window(), nullptr);
}

TEST_F(Lifecycle, AppearsEveryTime) {
    show(a);
    events().clear();
    for (int time = 0; time < 2; ++time) {
        present(false);
        dismiss(a, false);
    }
    EXPECT_EQ(events(), (Events{"B viewDidLoad", "B viewWillAppear", "A viewDidDisappear",
                                "A viewWillAppear", "B viewDidDisappear", "B viewWillAppear",
                                "A viewDidDisappear", "A viewWillAppear", "B viewDidDisappear"}));
}

TEST_F(Lifecycle, EndsATransitionBeforeTheNext) {
    show(a);
    events().clear();
    bool isShown = false;
    a->present(b, true, [&isShown] { isShown = true; });
    dismiss(b, true);
    EXPECT_TRUE(isShown);
    EXPECT_EQ(events(),
              (Events{"B viewDidLoad", "B viewWillAppear animated", "A viewDidDisappear animated",
                      "A viewWillAppear animated", "B viewDidDisappear animated"}));
}

TEST_F(Lifecycle, PresentsAgainDuringTheDismissal) {
    show(a);
    present(true);
    events().clear();
    const CapturedOutput errors(2);
    b->dismiss(true, nullptr);
    present(true);
    EXPECT_EQ(events(), (Events{"A viewWillAppear animated", "B viewDidDisappear animated",
                                "B viewWillAppear animated", "A viewDidDisappear animated"}));
    EXPECT_EQ(errors.text(), "");
}

TEST_F(Lifecycle, PresentsOneAtATime) {
    show(a);
    present(false);
    events().clear();
    const CapturedOutput errors(2);
    const auto c = std::make_shared<WitnessScreen>("C");
    bool isShown = false;
    a->present(c, false, [&isShown] { isShown = true; });
    EXPECT_EQ(a->presentedViewController(), b);
    EXPECT_EQ(c->presentingViewController(), nullptr);
    EXPECT_EQ(events(), Events{});
    EXPECT_FALSE(isShown);
    EXPECT_NE(errors.text().find("another one is shown above its presenter"), std::string::npos);
}

TEST_F(Lifecycle, PresentsOnlyInAWindow) {
    const CapturedOutput errors(2);
    a->present(b, false, nullptr);
    EXPECT_EQ(a->presentedViewController(), nullptr);
    EXPECT_NE(errors.text().find("its presenter is in no window"), std::string::npos);
}

TEST_F(Lifecycle, ReleasesADismissedScreen) {
    show(a);
    present(false);
    const std::weak_ptr<WitnessScreen> left = b;
    b.reset();
    dismiss(a, false);
    EXPECT_TRUE(waitUntil([&left] { return left.expired(); }));
}

TEST_F(Lifecycle, AsksTheResponderChainForActions) {
    show(a);
    EXPECT_EQ(a->next(), window);
    EXPECT_EQ(a->view()->next(), a);
    EXPECT_FALSE(a->canPerformAction("anything", nullptr));
}

}  // namespace
}  // namespace orvalo::testing
