#pragma once

#include <memory>
#include <vector>

#include "platform/audio/unit/AVAudioUnitComponent.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// The component registry: the LV2 plug-ins on the search path that have component codes. Read
/// once, at the first use. Any thread.
class AVAudioUnitComponentManager : public NSObject {
  public:
    static const std::shared_ptr<AVAudioUnitComponentManager>& sharedAudioUnitComponentManager();

    /// The components whose fields equal the description's non-zero fields, in the registry's
    /// order: plug-ins outside the application's own folder by URI, then those inside by URI.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> components(
        const AudioComponentDescription& matchingDescription) const;

  private:
    AVAudioUnitComponentManager();

    const std::vector<std::shared_ptr<AVAudioUnitComponent>> components_;
};

}  // namespace orvalo
