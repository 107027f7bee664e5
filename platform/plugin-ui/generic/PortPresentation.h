#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// How a control port is presented to the user, as its plug-in's data say.
struct PortPresentation {
    enum class Kind {
        number,
        integer,
        toggle,   ///< Off at 0 and below.
        trigger,  ///< Set to its greatest value for a moment.
        choice,   ///< One of choices.
    };

    /// A value with a name.
    struct Choice {
        float value = 0.0F;
        std::string name;
    };

    std::uint32_t index = 0;
    std::string name;
    std::string comment;  ///< "" for none.
    std::string group;    ///< The name of its group; "" for none.
    bool isInput = false;
    Kind kind = Kind::number;
    float minimum = 0.0F;  ///< Finite, as the next two.
    float maximum = 1.0F;  ///< Above the minimum.
    float defaultValue = 0.0F;
    bool isLogarithmic = false;  ///< The minimum is above 0.
    std::string unit;            ///< A symbol such as "dB"; "" for none.
    std::vector<Choice> choices;

    /// A value as text with its unit, such as "-6.0 dB" or "Triangle".
    std::string text(float value) const;
    /// The place of a value between the minimum, 0, and the maximum, 1.
    double place(float value) const;
    float valueAt(double place) const;
};

/// A plug-in's name and its control ports that a UI shows, in port order.
struct PluginPresentation {
    std::string title;
    std::vector<PortPresentation> ports;

    /// sampleRate: for ranges that are multiples of it, in Hz.
    static PluginPresentation read(LV2World& world, const LV2PluginData& plugin, double sampleRate);
};

}  // namespace orvalo
