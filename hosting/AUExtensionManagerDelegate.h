#pragma once

#include <memory>

namespace orvalo {

class AVAudioUnit;

/// Receives the events of an AUExtensionManager on a thread of the global queue, never the main
/// thread.
class AUExtensionManagerDelegate {
  public:
    virtual ~AUExtensionManagerDelegate() = default;

    /// The effect was instantiated and connected into the engine.
    virtual void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) = 0;
    /// The search has ended successfully. Called after onFoundComponent().
    virtual void onEngineInitialized() = 0;
};

}  // namespace orvalo
