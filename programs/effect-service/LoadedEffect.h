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

/// The effect of this process: the unit, the memory that it shares with the host, and what goes on
/// between them. Main thread.
class LoadedEffect {
  public:
    /// memory: of the host's SharedAudio. tellState: as StateWatch has it. Throws NSError: the
    /// memory is another, the plug-in cannot be made, or is not the one that the host knows.
    LoadedEffect(const bridge::Instantiate& request, FileDescriptor memory,
                 std::function<bool(const std::string&)> tellState);

    const std::shared_ptr<LV2LocalAudioUnit>& unit() const { return unit_; }
    /// Loads the preset of that URI. Throws NSError when there is none, or it cannot be read.
    void loadPreset(const std::string& uri);
    /// Tells of the state and the controls, where they have changed; and of MIDI that was lost.
    void look();
    /// The same for the controls alone.
    void publishControls() { audioThread_.publishControls(); }

  private:
    LV2World world_;
    SharedAudio audio_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    ServiceAudioThread audioThread_;
    StateWatch stateWatch_;
};

}  // namespace orvalo
