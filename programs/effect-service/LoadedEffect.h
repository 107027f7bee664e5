#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "programs/effect-service/ServiceAudioThread.h"
#include "programs/effect-service/StateWatch.h"

namespace orvalo {

/// The effect of this process: the unit, the shared memory, the audio thread and the state watch.
/// Main thread.
class LoadedEffect {
  public:
    /// memory: of the host's SharedAudio. sendState: see StateWatch. Throws NSError: the memory has
    /// the wrong size, the plug-in cannot be instantiated, or its ports are not those of the
    /// request.
    LoadedEffect(const bridge::Instantiate& request, FileDescriptor memory,
                 std::function<bool(const std::string&)> sendState);

    const std::shared_ptr<LV2LocalAudioUnit>& unit() const { return unit_; }
    /// Loads the preset with that URI. Throws NSError when it does not exist or cannot be read.
    void loadPreset(const std::string& uri);
    /// Sets a control input and publishes it; ignores other ports.
    void setControl(const bridge::ControlValue& control);
    /// Sends the state when it has changed, publishes the control values, logs lost MIDI.
    void publish();
    /// Copies the control values into the shared memory.
    void publishControls() { audioThread_.publishControls(); }

  private:
    LV2World world_;
    SharedAudio audio_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    ServiceAudioThread audioThread_;
    StateWatch stateWatch_;
};

}  // namespace orvalo
