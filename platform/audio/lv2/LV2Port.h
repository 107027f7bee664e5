#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// What a port transmits.
enum class LV2PortKind {
    audio,
    control,
    cv,
    sequence,
    unconnected,  ///< Of a kind that this host does not support; the plug-in does not need it.
};

/// One port of a plug-in.
struct LV2Port {
    std::uint32_t index = 0;
    std::string symbol;
    std::string name;
    LV2PortKind kind = LV2PortKind::unconnected;
    bool isInput = false;

    float defaultValue = 0.0F;                                ///< Of a control input.
    float minimum = -std::numeric_limits<float>::infinity();  ///< Of a control, where stated.
    float maximum = std::numeric_limits<float>::infinity();   ///< Likewise.
    bool scalesWithRate = false;  ///< The three values are multiples of the rate.
    bool reportsLatency = false;  ///< A control output with the latency in frames.
    /// Of a sequence, in bytes: what the plug-in wishes, but 32 KiB to 16 MiB.
    std::uint32_t bufferSize = 0;
    bool carriesMIDI = false;        ///< A sequence with MIDI events.
    bool takesTimePosition = false;  ///< A sequence input that supports time positions.
};

/// The plug-in's ports by index. An optional port of an unknown kind or without a direction is
/// unconnected. Throws NSError that names the fault.
std::vector<LV2Port> readPorts(const LV2World::Access& access, const LilvPlugin* plugin,
                               const std::string& uri);

}  // namespace orvalo
