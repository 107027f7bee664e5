#pragma once

#include <lv2/options/options.h>

#include <cstdint>
#include <string>

#include "effect/Uris.h"

namespace orvalo::effect {

/// The context name, a string option by which the host tells where the effect runs. May change
/// while the plug-in lives, on the host's instantiation thread.
class ContextName {
  public:
    /// Reads the name from the options given at instantiation, which may be null.
    ContextName(const LV2_Options_Option* options, const Uris& uris);

    /// LV2_Options_Interface::get and set. Return the LV2_Options_Status bits of all options.
    std::uint32_t get(LV2_Options_Option* options) const;
    std::uint32_t set(const LV2_Options_Option* options);

  private:
    std::uint32_t setOne(const LV2_Options_Option& option);

    Uris uris_;
    std::string text_;
};

}  // namespace orvalo::effect
