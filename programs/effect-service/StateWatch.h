#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// Sends the plug-in's state when it has changed: checks every second, less often where saving is
/// slow, and on request. Does nothing before the plug-in has run, and for a plug-in without the
/// state extension. Main thread.
class StateWatch {
  public:
    /// send: sends a result of packState(); false when it could not, so that the state is sent
    /// again.
    StateWatch(std::shared_ptr<LV2LocalAudioUnit> unit,
               std::function<bool(const std::string& state)> send);
    ~StateWatch() = default;
    StateWatch(const StateWatch&) = delete;
    StateWatch& operator=(const StateWatch&) = delete;

    void sendIfChanged();

  private:
    void schedule(std::chrono::milliseconds delay);

    const std::shared_ptr<LV2LocalAudioUnit> unit_;
    const std::function<bool(const std::string&)> send_;
    const bool keepsState_;
    std::string sent_;
    bool hasWarned_ = false;
    GSourcePointer timer_;
};

}  // namespace orvalo
