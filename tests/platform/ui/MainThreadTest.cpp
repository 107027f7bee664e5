#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <utility>

#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

class MainThreadDeathTest : public LayoutFixture {};

TEST_F(MainThreadDeathTest, NamesAnOperationCalledOnAnotherThread) {
    const auto view = std::make_shared<UIView>();
    const auto other = std::make_shared<UIView>();
    const auto screen = std::make_shared<WitnessScreen>("Screen");
    const std::vector<std::pair<const char*, std::function<void()>>> operations{
        {"UIView", [] { const UIView made; }},
        {"UIView\\.isHidden", [&] { view->setHidden(true); }},
        {"UIView\\.frame", [&] { view->setFrame({}); }},
        {"UIView\\.addSubview", [&] { view->addSubview(other); }},
        {"UIView\\.translatesAutoresizingMaskIntoConstraints",
         [&] { view->setTranslatesAutoresizingMaskIntoConstraints(false); }},
        {"NSLayoutConstraint\\.activate", [&] { NSLayoutConstraint::activate({}); }},
        {"UIViewController", [] { const WitnessScreen made("Made"); }},
        {"UIViewController\\.view", [&] { screen->view(); }},
        {"UIViewController\\.addChild", [&] { screen->addChild(nullptr); }},
        {"UIViewController\\.present", [&] { screen->present(nullptr, false, nullptr); }},
        {"UIViewController\\.performSegue", [&] { screen->performSegue("A", nullptr); }},
        {"UIWindow\\.makeKeyAndVisible", [&] { window->makeKeyAndVisible(); }},
    };
    for (const auto& [name, operation] : operations) {
        EXPECT_EXIT(std::thread(operation).join(), ::testing::KilledBySignal(SIGABRT),
                    std::string("Fatal error: ") + name +
                        " was called from a thread other than the main thread\\.")
            << name;
    }
}

}  // namespace
}  // namespace orvalo::testing
