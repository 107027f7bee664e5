#pragma once

#include <functional>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The timer in the main loop that lets a UI work: LV2PluginUI::kUpdateRate while the UI is visible
/// and seldom while it is hidden. The first call follows soon, so that the UI prepares its picture;
/// when the UI becomes visible, some calls follow in quick succession, because it has to redraw.
/// Main thread.
class PluginUITimer {
  public:
    /// Starts for a hidden UI. priority: of the source in the main loop. work may destroy the
    /// object.
    PluginUITimer(int priority, std::function<void()> work);
    ~PluginUITimer() = default;
    PluginUITimer(const PluginUITimer&) = delete;
    PluginUITimer& operator=(const PluginUITimer&) = delete;

    void setVisible(bool isVisible);

  private:
    void setPeriod(unsigned milliseconds);
    void fire();

    const int priority_;
    const std::function<void()> work_;
    GSourcePointer source_;
    bool isVisible_ = false;
    int quickCalls_ = 1;  // Left.
};

}  // namespace orvalo
