#include "platform/plugin-ui/x11/PluginUITimer.h"

#include <utility>

#include "platform/plugin-ui/x11/LV2PluginUI.h"

namespace orvalo {

namespace {

// Milliseconds.
constexpr unsigned kVisiblePeriod = static_cast<unsigned>(1000.0 / LV2PluginUI::kUpdateRate);
constexpr unsigned kQuickPeriod = 2;
// Short enough that events for the UI do not pile up.
constexpr unsigned kHiddenPeriod = 250;

constexpr int kQuickCalls = 10;

}  // namespace

PluginUITimer::PluginUITimer(int priority, std::function<void()> work)
    : priority_(priority), work_(std::move(work)) {
    setPeriod(kQuickPeriod);
}

void PluginUITimer::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    quickCalls_ = isVisible ? kQuickCalls : 0;
    setPeriod(isVisible ? kQuickPeriod : kHiddenPeriod);
}

void PluginUITimer::setPeriod(unsigned milliseconds) {
    source_.reset(g_timeout_source_new(milliseconds));
    g_source_set_priority(source_.get(), priority_);
    g_source_set_callback(
        source_.get(),
        [](void* self) -> gboolean {
            static_cast<PluginUITimer*>(self)->fire();
            // Where fire() destroyed the object or replaced the source, the source is destroyed.
            return G_SOURCE_CONTINUE;
        },
        this, nullptr);
    g_source_attach(source_.get(), nullptr);
}

void PluginUITimer::fire() {
    if (quickCalls_ > 0 && --quickCalls_ == 0) {
        setPeriod(isVisible_ ? kVisiblePeriod : kHiddenPeriod);
    }
    const auto work = work_;
    work();
}

}  // namespace orvalo
