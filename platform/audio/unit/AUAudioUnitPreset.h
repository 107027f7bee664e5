#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// A preset of an audio unit. Factory presets are numbered from 0.
class AUAudioUnitPreset : public NSObject {
  public:
    AUAudioUnitPreset(std::int64_t presetNumber, std::string presetName)
        : number(presetNumber), name(std::move(presetName)) {}

    const std::int64_t number;
    const std::string name;
};

}  // namespace orvalo
