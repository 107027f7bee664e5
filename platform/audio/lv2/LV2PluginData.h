#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Port.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// A plug-in's data. The host supports everything that the plug-in requires.
struct LV2PluginData {
    std::string uri;
    std::string binary;  ///< The path of the shared library.
    std::vector<LV2Port> ports;
    std::uint32_t inputChannelCount = 0;
    std::uint32_t outputChannelCount = 0;
    std::uint32_t sequenceSize = 0;  ///< Of the largest sequence buffer, in bytes.
    std::vector<std::string> midiOutputNames;
    bool hasThreadSafeRestore = false;
    bool hasDefaultState = false;
    bool hasX11UI = false;

    /// Throws NSError: no such plug-in, broken data, no library, a required feature or option that
    /// the host does not support, no ports, or an unsupported port.
    static LV2PluginData read(const LV2World::Access& access, const std::string& uri);
};

}  // namespace orvalo
