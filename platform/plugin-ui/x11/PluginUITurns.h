#pragma once

#include <functional>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The turns that a UI gets in the main loop: as often as it may redraw while it is on
/// screen, seldom while it is not, one soon after it is made, in which it can prepare its picture,
/// and some in quick succession when it comes on screen, because the X server asks for that picture
/// then. Main thread.
class PluginUITurns {
  public:
    /// Begins those of one that is not on screen. priority: of the main loop's sources. turn may
    /// end the object.
    PluginUITurns(int priority, std::function<void()> turn);
    ~PluginUITurns();
    PluginUITurns(const PluginUITurns&) = delete;
    PluginUITurns& operator=(const PluginUITurns&) = delete;

    void setVisible(bool isVisible);

  private:
    void setPeriod(unsigned milliseconds);
    void take();

    const int priority_;
    const std::function<void()> turn_;
    GSourcePointer timer_;
    bool isVisible_ = false;
    int quickTurns_ = 1;
};

}  // namespace orvalo
