#include "platform/audio/interface/InterfaceTurns.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace orvalo;

/// The main loop, until a timer has fired that stands between the periods of the turns.
class Turns : public ::testing::Test {
  protected:
    static constexpr unsigned kBetween = 120;  // Milliseconds.

    void begin() {
        turns_ = std::make_unique<InterfaceTurns>(G_PRIORITY_DEFAULT, [this] { order_ += "t"; });
    }
    void addTimer() {
        g_timeout_add_once(
            kBetween, [](void* order) { *static_cast<std::string*>(order) += "|"; }, &order_);
    }
    void runUntilTimer() {
        while (order_.find('|') == std::string::npos) {
            g_main_context_iteration(nullptr, TRUE);
        }
    }
    /// How many turns came before the timer.
    std::size_t turnsBeforeTimer() const { return order_.find('|'); }

    std::string order_;
    std::unique_ptr<InterfaceTurns> turns_;
};

TEST_F(Turns, ComeOnceAtTheBeginningAndAreSeldomWhileTheInterfaceIsHidden) {
    begin();
    addTimer();
    runUntilTimer();
    EXPECT_EQ(turnsBeforeTimer(), 1U);
}

TEST_F(Turns, ComeAtOnceWhenTheInterfaceIsShown) {
    begin();
    turns_->setVisible(true);
    addTimer();
    runUntilTimer();
    EXPECT_GE(turnsBeforeTimer(), 1U);
}

TEST_F(Turns, AreSeldomAgainWhenItIsHiddenAgain) {
    begin();
    addTimer();
    turns_->setVisible(true);
    turns_->setVisible(false);
    runUntilTimer();
    EXPECT_EQ(turnsBeforeTimer(), 0U);
}

TEST_F(Turns, MayEndTheirObject) {
    int count = 0;
    std::unique_ptr<InterfaceTurns> turns;
    turns = std::make_unique<InterfaceTurns>(G_PRIORITY_DEFAULT, [&] {
        turns = nullptr;
        ++count;
    });
    turns->setVisible(true);
    while (count == 0) {
        g_main_context_iteration(nullptr, TRUE);
    }
    addTimer();
    runUntilTimer();
    EXPECT_EQ(count, 1);
}

}  // namespace
