#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/audio/unit/AVAudioUnitComponent.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// The component registry: the LV2 plug-ins on the search path that have component codes. Read at
/// the first use and by readAgain(). Any thread.
class AVAudioUnitComponentManager : public NSObject {
  public:
    static const std::shared_ptr<AVAudioUnitComponentManager>& sharedAudioUnitComponentManager();

    /// The components whose fields equal the description's non-zero fields, in the registry's
    /// order: plug-ins outside the application's own folder by URI, then those inside by URI. A
    /// description of type, subtype and manufacturer warns, once for each, of components in which
    /// only the flags differ.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> components(
        const AudioComponentDescription& matchingDescription) const;

    /// Reads the registry again, because effects may have been installed.
    void readAgain();

  private:
    AVAudioUnitComponentManager();
    void sayPassedOver(const AVAudioUnitComponent& component, std::uint32_t wantedFlags) const;

    mutable std::mutex mutex_;  // Guards the members below.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> components_;
    mutable std::unordered_set<std::string> passedOver_;
};

}  // namespace orvalo
