#pragma once

#include <string>

#include "platform/audio/unit/AudioComponentDescription.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// An effect in the component registry.
class AVAudioUnitComponent : public NSObject {
  public:
    AVAudioUnitComponent(const AudioComponentDescription& description, std::string componentName,
                         std::string componentURI)
        : audioComponentDescription(description),
          name(std::move(componentName)),
          uri(std::move(componentURI)) {}

    const AudioComponentDescription audioComponentDescription;
    const std::string name;  ///< As its codes' bundle states it; "" when it does not.
    const std::string uri;   ///< The LV2 plug-in behind the codes.
};

}  // namespace orvalo
