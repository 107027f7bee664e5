#include <gtest/gtest.h>

#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

class Segue : public LayoutFixture {
  protected:
    Segue()
        : first(std::dynamic_pointer_cast<FirstScreen>(
              layout(twoScreens)->instantiateInitialViewController())) {
        show(first);
        events().clear();
    }

    std::shared_ptr<FirstScreen> first;
};

TEST_F(Segue, PreparesAndPresentsANewScreen) {
    first->performSegue("ShowAgain", first);
    ASSERT_EQ(first->segues.size(), 1U);
    const auto& segue = *first->segues.front();
    EXPECT_EQ(segue.identifier, "ShowAgain");
    EXPECT_EQ(segue.source, first);
    EXPECT_NE(std::dynamic_pointer_cast<SecondScreen>(segue.destination), nullptr);
    EXPECT_EQ(first->senders.front(), first);
    EXPECT_EQ(first->presentedViewController(), segue.destination);
    EXPECT_EQ(segue.destination->presentingViewController(), first);
    EXPECT_EQ(events()[0], "FirstScreen prepare ShowAgain");
    EXPECT_EQ(events()[1], "SecondScreen viewDidLoad");
}

TEST_F(Segue, IsPerformedByItsTrigger) {
    click(*first->button.get());
    ASSERT_EQ(first->segues.size(), 1U);
    EXPECT_EQ(first->segues.front()->identifier, "ShowSecond");
    EXPECT_EQ(first->senders.front(), first->button.get());
    EXPECT_NE(first->presentedViewController(), nullptr);
}

TEST_F(Segue, CreatesANewScreenEveryTime) {
    first->performSegue("ShowAgain", nullptr);
    bool isGone = false;
    first->dismiss(false, [&isGone] { isGone = true; });
    ASSERT_TRUE(waitUntil([&isGone] { return isGone; }));
    first->performSegue("ShowAgain", nullptr);
    ASSERT_EQ(first->segues.size(), 2U);
    EXPECT_NE(first->segues[0]->destination, first->segues[1]->destination);
}

using SegueDeathTest = Segue;

TEST_F(SegueDeathTest, EndsTheProgramWhenTheLayoutHasNoSuchSegue) {
    EXPECT_EXIT(first->performSegue("ShowThird", nullptr), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: There is no segue \"ShowThird\" out of this screen\\.");
    const UIViewController* none = nullptr;
    EXPECT_EQ(first->presentedViewController().get(), none);
}

}  // namespace
}  // namespace orvalo::testing
