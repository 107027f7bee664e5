#include "platform/audio/interface/InterfaceTurns.h"

#include <utility>

#include "platform/audio/interface/LV2Interface.h"

namespace orvalo {

namespace {

// Milliseconds.
constexpr unsigned kShownPeriod = static_cast<unsigned>(1000.0 / LV2Interface::kUpdateRate);
constexpr unsigned kQuickPeriod = 2;
constexpr int kQuickTurns = 10;
// Often enough that nothing piles up, seldom enough to cost nothing.
constexpr unsigned kHiddenPeriod = 250;

}  // namespace

InterfaceTurns::InterfaceTurns(int priority, std::function<void()> turn)
    : priority_(priority), turn_(std::move(turn)) {
    setPeriod(kQuickPeriod);
}

InterfaceTurns::~InterfaceTurns() {
    g_source_destroy(timer_.get());
}

void InterfaceTurns::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    quickTurns_ = isVisible ? kQuickTurns : 0;
    setPeriod(isVisible ? kQuickPeriod : kHiddenPeriod);
}

void InterfaceTurns::setPeriod(unsigned milliseconds) {
    if (timer_ != nullptr) {
        g_source_destroy(timer_.get());
    }
    timer_.reset(g_timeout_source_new(milliseconds));
    g_source_set_priority(timer_.get(), priority_);
    g_source_set_callback(
        timer_.get(),
        [](void* self) -> gboolean {
            static_cast<InterfaceTurns*>(self)->take();
            // The end of the object destroys the source.
            return G_SOURCE_CONTINUE;
        },
        this, nullptr);
    g_source_attach(timer_.get(), nullptr);
}

void InterfaceTurns::take() {
    if (quickTurns_ > 0 && --quickTurns_ == 0) {
        setPeriod(isVisible_ ? kShownPeriod : kHiddenPeriod);
    }
    const auto turn = turn_;
    turn();
}

}  // namespace orvalo
