#pragma once

namespace orvalo {

/// Where an effect is loaded.
enum class EffectLoading { inProcess, outOfProcess };

/// Where effects are loaded that nobody gives a place: as setPlatformEffectLoading() said, else as
/// the setting ORVALO_EFFECT_LOADING says, "in-process" or "out-of-process", else outside. Another
/// value of the setting is left aside, with a warning that names it. Any thread.
EffectLoading platformEffectLoading();

/// Sets it for this program, whatever the setting says. Before the first effect is loaded.
void setPlatformEffectLoading(EffectLoading loading);

}  // namespace orvalo
