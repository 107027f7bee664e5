#include "platform/audio/bridge/host/ControlRanges.h"

#include <lilv/lilv.h>

#include <cmath>
#include <limits>

namespace orvalo {

std::vector<ControlRange> readControlRanges(const LV2World::Access& access,
                                            const LV2PluginData& data) {
    const auto* plugin = access.plugin(data.uri);
    std::vector<float> minima(data.ports.size());
    std::vector<float> maxima(data.ports.size());
    std::vector<float> defaults(data.ports.size());
    lilv_plugin_get_port_ranges_float(plugin, minima.data(), maxima.data(), defaults.data());
    std::vector<ControlRange> ranges;
    for (const auto& port : data.ports) {
        if (port.kind != LV2PortKind::control || !port.isInput) {
            continue;
        }
        constexpr float kBoundless = std::numeric_limits<float>::infinity();
        ControlRange range{port.index, minima[port.index], maxima[port.index], port.scalesWithRate};
        range.minimum = std::isnan(range.minimum) ? -kBoundless : range.minimum;
        range.maximum = std::isnan(range.maximum) ? kBoundless : range.maximum;
        ranges.push_back(range);
    }
    return ranges;
}

}  // namespace orvalo
