#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/audio/unit/AUAudioUnitPreset.h"

namespace orvalo {

/// One preset of the effect. The preset is never null.
class Preset {
  public:
    explicit Preset(std::shared_ptr<AUAudioUnitPreset> preset)
        : audioUnitPreset(std::move(preset)) {}

    std::int64_t number() const { return audioUnitPreset->number; }
    const std::string& name() const { return audioUnitPreset->name; }

    const std::shared_ptr<AUAudioUnitPreset> audioUnitPreset;
};

}  // namespace orvalo
