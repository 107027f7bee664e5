#pragma once

#include <string>

#include "Audio Engine/AUEnginePlayerDelegate.h"
#include "hosting/AUExtensionManagerDelegate.h"
#include "platform/audio/engine/AVAudioUnit.h"

namespace orvalo::testing {

/// A delegate that prints what it is told, and where: "[main]" on the main thread, "[<name>]" on a
/// thread that nameThisThread() has named, "[global]" on any other.
class PrintingDelegate : public AUEnginePlayerDelegate, public AUExtensionManagerDelegate {
  public:
    static void nameThisThread(const std::string& name);

    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;
    void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) override;
    void onEngineInitialized() override;

    /// The unit that was found.
    std::shared_ptr<AVAudioUnit> found;
};

}  // namespace orvalo::testing
