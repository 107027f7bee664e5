#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// Tells of the plug-in's state whenever it is another than was told last: at each look, and on its
/// own every second, less often where saving takes long. A plug-in that keeps no state has none.
/// Main thread.
class StateWatch {
  public:
    /// tell: gets the state as packState() gives it; false when it has to be told again.
    StateWatch(std::shared_ptr<LV2LocalAudioUnit> unit,
               std::function<bool(const std::string& state)> tell);
    ~StateWatch();
    StateWatch(const StateWatch&) = delete;
    StateWatch& operator=(const StateWatch&) = delete;

    void look();

  private:
    void wait(std::chrono::milliseconds time);

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const std::function<bool(const std::string&)> tell_;
    const bool keepsState_;
    std::string told_;
    bool hasComplained_ = false;
    GSourcePointer timer_;
};

}  // namespace orvalo
