#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Error.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// The error "The UI of <plugin> cannot be shown: reason.". reason: a clause without a full stop.
NSError pluginUIError(LV2ErrorCode code, const std::string& plugin, const std::string& reason);

/// What the data say of a plug-in's X11 UI, checked: everything that it needs is there.
struct LV2PluginUIData {
    std::string plugin;
    std::string uri;
    std::string title;                         ///< The plug-in's name.
    std::string bundle;                        ///< The path of its bundle.
    std::string binary;                        ///< The path of its shared library.
    std::vector<std::uint32_t> notifiedPorts;  ///< Sequence outputs whose events it wants.
    bool isFixedSize = false;
    bool reachesInstance = false;  ///< It may use the plug-in's instance directly.
    bool staysLoaded = false;      ///< Its library must not be unloaded.

    /// Throws NSError: no X11 UI (with the kinds that there are), a required feature or
    /// option that is not offered (by its URI), broken data, no library.
    static LV2PluginUIData read(const LV2World::Access& access, const LV2PluginData& plugin);
};

}  // namespace orvalo
