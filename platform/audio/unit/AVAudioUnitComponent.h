#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/audio/unit/AudioComponentDescription.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// An effect in the component registry.
class AVAudioUnitComponent : public NSObject {
  public:
    AVAudioUnitComponent(const AudioComponentDescription& description, std::string componentName,
                         std::string componentURI)
        : AVAudioUnitComponent(description, std::move(componentName), std::move(componentURI),
                               description.componentManufacturer) {}
    /// A component that is used under other codes than its bundle states.
    AVAudioUnitComponent(const AudioComponentDescription& description, std::string componentName,
                         std::string componentURI, std::uint32_t codeOfManufacturer)
        : audioComponentDescription(description),
          name(std::move(componentName)),
          uri(std::move(componentURI)),
          statedManufacturer(codeOfManufacturer) {}

    const AudioComponentDescription audioComponentDescription;
    const std::string name;  ///< As stated with its codes; "" without one.
    const std::string uri;   ///< The URI of the LV2 plug-in.
    /// The manufacturer code that a bundle states, on which rights depend; 0 without one.
    const std::uint32_t statedManufacturer;
};

}  // namespace orvalo
