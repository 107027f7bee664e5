#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/audio/lv2/ProcessFolder.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "programs/play/PlayOptions.h"

namespace orvalo {

/// The effect, the preset and the values that the options ask for. Without such options it does
/// nothing.
class EffectChoice {
  public:
    /// Makes the options' effect the only one of the registry. Call before the registry is used.
    /// Throws std::runtime_error, whose text is one line that names the culprit.
    explicit EffectChoice(const PlayOptions& options);

    /// Loads the preset, then sets the values. Any thread.
    void apply(AUAudioUnit& unit) const;

  private:
    std::vector<std::string> presets_;     ///< URIs, in the order of loading.
    std::optional<ProcessFolder> folder_;  ///< Contains the preset with the values.
};

}  // namespace orvalo
