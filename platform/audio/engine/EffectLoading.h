#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/audio/lv2/LV2FullState.h"
#include "platform/audio/unit/ExpectedRendering.h"

namespace orvalo {

class BridgedAudioUnit;

/// Where an effect is loaded.
enum class EffectLoading { inProcess, outOfProcess };

/// Where effects are loaded by default: as set with setPlatformEffectLoading(), else as the
/// environment variable ORVALO_EFFECT_LOADING says ("in-process" or "out-of-process"), else out of
/// process. Another value of the variable is ignored with a warning. Any thread.
EffectLoading platformEffectLoading();

/// Overrides the environment variable. Call before the first effect is loaded, while there is one
/// thread.
void setPlatformEffectLoading(EffectLoading loading);

/// How effects are expected to render when they are instantiated. Any thread.
ExpectedRendering expectedRendering();
/// Call before the first effect is loaded, while there is one thread.
void setExpectedRendering(const ExpectedRendering& rendering);

/// Keeps what effects were from one run of the program to the next. Only of effects in a service.
struct EffectMemory {
    /// What an effect of that URI starts from; absent for its default.
    std::function<std::optional<LV2FullState>(const std::string& uri)> recall;
    /// A unit was made. Called on the thread that made it.
    std::function<void(const std::shared_ptr<BridgedAudioUnit>& unit)> made;
};

/// Without a memory every effect starts with its default. Call before the first effect is loaded.
void setEffectMemory(EffectMemory memory);
const EffectMemory& effectMemory();

}  // namespace orvalo
