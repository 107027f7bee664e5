#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "Audio Engine/AUEnginePlayerDelegate.h"
#include "hosting/AUExtensionManagerDelegate.h"
#include "platform/audio/engine/AVAudioUnit.h"

namespace orvalo::testing {

/// A delegate that prints its calls with their thread: "[main]", "[<name>]" for a thread named by
/// nameThisThread(), or "[global]".
class PrintingDelegate : public AUEnginePlayerDelegate, public AUExtensionManagerDelegate {
  public:
    static void nameThisThread(const std::string& name);

    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;
    void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) override;
    void onEngineInitialized() override;

    /// The found effect. Any thread.
    std::shared_ptr<AVAudioUnit> found() const;

  private:
    mutable std::mutex mutex_;
    std::shared_ptr<AVAudioUnit> found_;
};

}  // namespace orvalo::testing
