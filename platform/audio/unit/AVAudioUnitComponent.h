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
    const std::string name;  ///< As stated with its codes; "" without one.
    const std::string uri;   ///< The URI of the LV2 plug-in.
};

}  // namespace orvalo
