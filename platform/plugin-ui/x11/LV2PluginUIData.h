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

/// A plug-in's X11 UI as its data describe it. The host supports everything that the UI requires.
struct LV2PluginUIData {
    std::string plugin;
    std::string uri;
    std::string title;                         ///< The plug-in's name.
    std::string bundle;                        ///< The path of its bundle.
    std::string binary;                        ///< The path of its shared library.
    std::vector<std::uint32_t> notifiedPorts;  ///< Sequence outputs whose events it gets.
    bool isFixedSize = false;
    bool accessesInstance = false;  ///< The UI uses the plug-in's instance directly.
    bool staysLoaded = false;       ///< Its library must not be unloaded.

    /// Throws NSError that names the kinds of UIs where none is an X11 UI, a required feature or
    /// option that the host does not offer, broken data, or the lack of a library.
    static LV2PluginUIData read(LV2World& world, const LV2PluginData& plugin);
};

}  // namespace orvalo
