#include "platform/plugin-ui/x11/PluginUITurns.h"

#include <utility>

#include "platform/plugin-ui/x11/LV2PluginUI.h"

namespace orvalo {

namespace {

// Milliseconds.
constexpr unsigned kShownPeriod = static_cast<unsigned>(1000.0 / LV2PluginUI::kUpdateRate);
constexpr unsigned kQuickPeriod = 2;
constexpr int kQuickTurns = 10;
// Often enough that nothing piles up, seldom enough to cost nothing.
constexpr unsigned kHiddenPeriod = 250;

}  // namespace

PluginUITurns::PluginUITurns(int priority, std::function<void()> turn)
    : priority_(priority), turn_(std::move(turn)) {
    setPeriod(kQuickPeriod);
}

PluginUITurns::~PluginUITurns() {
    g_source_destroy(timer_.get());
}

void PluginUITurns::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    quickTurns_ = isVisible ? kQuickTurns : 0;
    setPeriod(isVisible ? kQuickPeriod : kHiddenPeriod);
}

void PluginUITurns::setPeriod(unsigned milliseconds) {
    if (timer_ != nullptr) {
        g_source_destroy(timer_.get());
    }
    timer_.reset(g_timeout_source_new(milliseconds));
    g_source_set_priority(timer_.get(), priority_);
    g_source_set_callback(
        timer_.get(),
        [](void* self) -> gboolean {
            static_cast<PluginUITurns*>(self)->take();
            // The end of the object destroys the source.
            return G_SOURCE_CONTINUE;
        },
        this, nullptr);
    g_source_attach(timer_.get(), nullptr);
}

void PluginUITurns::take() {
    if (quickTurns_ > 0 && --quickTurns_ == 0) {
        setPeriod(isVisible_ ? kShownPeriod : kHiddenPeriod);
    }
    const auto turn = turn_;
    turn();
}

}  // namespace orvalo
