#pragma once

#include <map>
#include <string>

namespace orvalo {

/// All that a unit of a plug-in can start from: what it was when a unit of the plug-in was saved.
struct LV2FullState {
    std::map<std::string, float> controls{};  ///< Control inputs by symbol.
    /// What the plug-in saved by the state extension, opaque; "" for nothing.
    std::string properties{};
    /// The URI of a preset that comes first; "" without one.
    std::string preset{};
};

}  // namespace orvalo
