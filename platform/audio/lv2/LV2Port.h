#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace orvalo {

/// What a port carries.
enum class LV2PortKind {
    audio,
    control,
    cv,
    sequence,
    unconnected,  ///< Something that this host does not have, which the plug-in can do without.
};

/// One port of a plug-in, as its data describe it.
struct LV2Port {
    std::uint32_t index = 0;
    std::string symbol;
    std::string name;
    LV2PortKind kind = LV2PortKind::unconnected;
    bool isInput = false;

    float defaultValue = 0.0F;                                ///< Of a control input.
    float minimum = -std::numeric_limits<float>::infinity();  ///< Of a control, where stated.
    float maximum = std::numeric_limits<float>::infinity();   ///< Likewise.
    bool scalesWithRate = false;     ///< These three are multiples of the sample rate.
    bool reportsLatency = false;     ///< A control output with the latency in frames.
    std::uint32_t bufferSize = 0;    ///< Of a sequence, in bytes.
    bool carriesMIDI = false;        ///< A sequence with MIDI events.
    bool takesTimePosition = false;  ///< A sequence input that wants time positions.
};

}  // namespace orvalo
