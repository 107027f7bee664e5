#include "platform/plugin-ui/x11/PluginUITimer.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace orvalo;

/// The order of the UI timer's calls ("t") and of another timer ("|"), whose time lies between the
/// periods of the visible and the hidden UI.
class UITimer : public ::testing::Test {
  protected:
    static constexpr unsigned kBetween = 120;  // Milliseconds.

    void start() {
        timer_ = std::make_unique<PluginUITimer>(G_PRIORITY_DEFAULT, [this] { order_ += "t"; });
    }
    /// priority: decides which timer comes first when a late loop finds both due.
    void addOtherTimer(int priority = G_PRIORITY_DEFAULT) {
        g_timeout_add_full(
            priority, kBetween,
            [](void* order) -> gboolean {
                *static_cast<std::string*>(order) += "|";
                return G_SOURCE_REMOVE;
            },
            &order_, nullptr);
    }
    void runUntil(char event) {
        while (order_.find(event) == std::string::npos) {
            g_main_context_iteration(nullptr, TRUE);
        }
    }
    std::size_t callsBeforeOtherTimer() const { return order_.find('|'); }

    std::string order_;
    std::unique_ptr<PluginUITimer> timer_;
};

TEST_F(UITimer, FiresOnceAtTheStartAndSeldomWhileHidden) {
    // Added first, so that it is due before the second call.
    addOtherTimer(G_PRIORITY_HIGH);
    start();
    runUntil('|');
    runUntil('t');
    EXPECT_EQ(std::count(order_.begin(), order_.end(), 't'), 1);
}

TEST_F(UITimer, FiresAtOnceWhenTheUIBecomesVisible) {
    start();
    timer_->setVisible(true);
    addOtherTimer();
    runUntil('|');
    EXPECT_GE(callsBeforeOtherTimer(), 1U);
}

TEST_F(UITimer, FiresSeldomWhenTheUIIsHiddenAgain) {
    start();
    addOtherTimer(G_PRIORITY_HIGH);
    timer_->setVisible(true);
    timer_->setVisible(false);
    runUntil('|');
    EXPECT_EQ(callsBeforeOtherTimer(), 0U);
}

TEST_F(UITimer, MayBeDestroyedByItsWork) {
    int count = 0;
    std::unique_ptr<PluginUITimer> timer;
    timer = std::make_unique<PluginUITimer>(G_PRIORITY_DEFAULT, [&] {
        timer = nullptr;
        ++count;
    });
    timer->setVisible(true);
    while (count == 0) {
        g_main_context_iteration(nullptr, TRUE);
    }
    addOtherTimer();
    runUntil('|');
    EXPECT_EQ(count, 1);
}

}  // namespace
