#pragma once

#include <lv2/options/options.h>

#include <cstdint>
#include <string>

#include "effect/Uris.h"

namespace orvalo::effect {

/// The option by which a host says where the effect runs, a text. It may change while the plug-in
/// lives, on the host's instantiation thread.
class ContextName {
  public:
    /// Takes the option from those given at instantiation; absent options give the empty name.
    ContextName(const LV2_Options_Option* options, const Uris& uris);

    /// The options extension's two operations: LV2_Options_Status bits for all options together.
    std::uint32_t get(LV2_Options_Option* options) const;
    std::uint32_t set(const LV2_Options_Option* options);

    const std::string& text() const { return text_; }

  private:
    std::uint32_t setOne(const LV2_Options_Option& option);

    Uris uris_;
    std::string text_;
};

}  // namespace orvalo::effect
