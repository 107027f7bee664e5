#pragma once

#include <memory>

namespace orvalo {

class AVAudioUnit;

/// What an AUExtensionManager tells its owner. Called on a thread of the global queue, never on the
/// main thread.
class AUExtensionManagerDelegate {
  public:
    virtual ~AUExtensionManagerDelegate() = default;

    /// The effect has been made and connected into the engine.
    virtual void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) = 0;
    /// The whole start-up of the effect is finished.
    virtual void onEngineInitialized() = 0;
};

}  // namespace orvalo
