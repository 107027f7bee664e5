#pragma once

#include "platform/audio/unit/ExpectedRendering.h"

namespace orvalo {

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

}  // namespace orvalo
