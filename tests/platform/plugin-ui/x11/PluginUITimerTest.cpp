#include "platform/plugin-ui/x11/PluginUITimer.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace orvalo;

/// The main loop, until a timer has fired that stands between the periods of the turns.
class Turns : public ::testing::Test {
  protected:
    static constexpr unsigned kBetween = 120;  // Milliseconds.

    void begin() {
        turns_ = std::make_unique<PluginUITimer>(G_PRIORITY_DEFAULT, [this] { order_ += "t"; });
    }
    /// priority: what comes first when the loop is late and the timer's time and a turn's are over.
    void addTimer(int priority = G_PRIORITY_DEFAULT) {
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
    /// How many turns came before the timer.
    std::size_t turnsBeforeTimer() const { return order_.find('|'); }

    std::string order_;
    std::unique_ptr<PluginUITimer> turns_;
};

TEST_F(Turns, ComeOnceAtTheBeginningAndAreSeldomWhileThePluginUIIsHidden) {
    // Before the first turn, so that its time is over before the second one's.
    addTimer(G_PRIORITY_HIGH);
    begin();
    runUntil('|');
    runUntil('t');
    EXPECT_EQ(std::count(order_.begin(), order_.end(), 't'), 1);
}

TEST_F(Turns, ComeAtOnceWhenThePluginUIIsShown) {
    begin();
    turns_->setVisible(true);
    addTimer();
    runUntil('|');
    EXPECT_GE(turnsBeforeTimer(), 1U);
}

TEST_F(Turns, AreSeldomAgainWhenItIsHiddenAgain) {
    begin();
    addTimer(G_PRIORITY_HIGH);
    turns_->setVisible(true);
    turns_->setVisible(false);
    runUntil('|');
    EXPECT_EQ(turnsBeforeTimer(), 0U);
}

TEST_F(Turns, MayEndTheirObject) {
    int count = 0;
    std::unique_ptr<PluginUITimer> turns;
    turns = std::make_unique<PluginUITimer>(G_PRIORITY_DEFAULT, [&] {
        turns = nullptr;
        ++count;
    });
    turns->setVisible(true);
    while (count == 0) {
        g_main_context_iteration(nullptr, TRUE);
    }
    addTimer();
    runUntil('|');
    EXPECT_EQ(count, 1);
}

}  // namespace
