#include "platform/audio/lv2/LV2Port.h"

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/port-props/port-props.h>
#include <lv2/resize-port/resize-port.h>
#include <lv2/time/time.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

namespace {

// Holds dense MIDI over the longest quantum, and a few large messages.
constexpr int kSequenceSize = 32 << 10;
// Some effects wish for more than they ever write.
constexpr int kLargestSequenceSize = 16 << 20;

/// lilv allocates a table for the highest index and crashes on a missing one, so the indices are
/// checked first.
void checkIndices(const LV2World::Access& access, const LilvPlugin* plugin,
                  const std::string& uri) {
    const auto portPredicate = access.uri(LV2_CORE__port);
    const auto indexPredicate = access.uri(LV2_CORE__index);
    const LilvPointer<LilvNodes> nodes(lilv_plugin_get_value(plugin, portPredicate.get()));
    std::vector<bool> isTaken(lilv_nodes_size(nodes.get()), false);
    if (isTaken.empty()) {
        throw lv2Error(LV2ErrorCode::unsupportedPort, uri, "it has no ports");
    }
    LILV_FOREACH(nodes, i, nodes.get()) {
        const auto* port = lilv_nodes_get(nodes.get(), i);
        const bool isResource = lilv_node_is_uri(port) || lilv_node_is_blank(port);
        const LilvPointer<LilvNode> index(
            isResource ? lilv_world_get(access.lilv(), port, indexPredicate.get(), nullptr)
                       : nullptr);
        const bool isNumber = index != nullptr && lilv_node_is_int(index.get());
        const int number = isNumber ? lilv_node_as_int(index.get()) : -1;
        if (number < 0 || static_cast<std::size_t>(number) >= isTaken.size() ||
            isTaken[static_cast<std::size_t>(number)]) {
            throw lv2Error(LV2ErrorCode::unsupportedPort, uri,
                           "its ports are not numbered from 0 on without a gap");
        }
        isTaken[static_cast<std::size_t>(number)] = true;
    }
}

/// Reads one port through lilv.
class PortReader {
  public:
    PortReader(const LV2World::Access& access, const LilvPlugin* plugin, std::uint32_t index)
        : access_(access),
          plugin_(plugin),
          port_(lilv_plugin_get_port_by_index(plugin, index)),
          index_(index) {}

    LV2Port read(const std::string& uri) const {
        LV2Port port;
        port.index = index_;
        port.symbol = text(lilv_port_get_symbol(plugin_, port_));
        const LilvPointer<LilvNode> name(lilv_port_get_name(plugin_, port_));
        port.name = name == nullptr ? port.symbol : text(name.get());
        port.isInput = isA(LV2_CORE__InputPort);
        port.kind = kind(port.isInput);
        if (port.kind == LV2PortKind::unconnected && !hasProperty(LV2_CORE__connectionOptional)) {
            throw lv2Error(LV2ErrorCode::unsupportedPort, uri,
                           "its port \"" + port.symbol + "\" is of a kind that is not supported");
        }
        if (port.kind == LV2PortKind::control) {
            readControl(port);
        } else if (port.kind == LV2PortKind::sequence) {
            readSequence(port);
        }
        return port;
    }

  private:
    static std::string text(const LilvNode* node) {
        const char* value = node == nullptr ? nullptr : lilv_node_as_string(node);
        return value == nullptr ? std::string() : std::string(value);
    }

    bool isA(const char* type) const {
        return lilv_port_is_a(plugin_, port_, access_.uri(type).get());
    }
    bool hasProperty(const char* property) const {
        return lilv_port_has_property(plugin_, port_, access_.uri(property).get());
    }
    LilvPointer<LilvNode> value(const char* predicate) const {
        return LilvPointer<LilvNode>(lilv_port_get(plugin_, port_, access_.uri(predicate).get()));
    }
    bool isDesignated(const char* designation) const {
        const auto node = value(LV2_CORE__designation);
        return node != nullptr && lilv_node_is_uri(node.get()) &&
               std::string(lilv_node_as_uri(node.get())) == designation;
    }
    bool supports(const char* event) const {
        return lilv_port_supports_event(plugin_, port_, access_.uri(event).get());
    }

    LV2PortKind kind(bool isInput) const {
        if (!isInput && !isA(LV2_CORE__OutputPort)) {
            return LV2PortKind::unconnected;
        }
        const bool isOptional = hasProperty(LV2_CORE__connectionOptional);
        if (isA(LV2_CORE__CVPort)) {
            return isOptional ? LV2PortKind::unconnected : LV2PortKind::cv;
        }
        if (isA(LV2_CORE__AudioPort)) {
            // The host has no signal for a side chain.
            const bool isLeftOut = isOptional && hasProperty(LV2_CORE_PREFIX "isSideChain");
            return isLeftOut ? LV2PortKind::unconnected : LV2PortKind::audio;
        }
        if (isA(LV2_CORE__ControlPort)) {
            return LV2PortKind::control;
        }
        if (isA(LV2_ATOM__AtomPort)) {
            const auto buffer = value(LV2_ATOM__bufferType);
            if (buffer == nullptr || text(buffer.get()) == LV2_ATOM__Sequence) {
                return LV2PortKind::sequence;
            }
        }
        return LV2PortKind::unconnected;
    }

    void readControl(LV2Port& port) const {
        LilvNode* byDefault = nullptr;
        LilvNode* lowest = nullptr;
        LilvNode* highest = nullptr;
        lilv_port_get_range(plugin_, port_, &byDefault, &lowest, &highest);
        const std::array<LilvPointer<LilvNode>, 3> owned{LilvPointer<LilvNode>(byDefault),
                                                         LilvPointer<LilvNode>(lowest),
                                                         LilvPointer<LilvNode>(highest)};
        const auto number = [](const LilvPointer<LilvNode>& node, float otherwise) {
            const bool isNumber =
                node != nullptr && (lilv_node_is_float(node.get()) ||
                                    lilv_node_is_int(node.get()) || lilv_node_is_bool(node.get()));
            float result = otherwise;
            if (isNumber) {
                result = lilv_node_is_bool(node.get())
                             ? (lilv_node_as_bool(node.get()) ? 1.0F : 0.0F)
                             : lilv_node_as_float(node.get());
            }
            return std::isfinite(result) ? result : otherwise;
        };
        // Without a default: the value nearest to 0 in the range; 1 for "enabled".
        const float fallback = isDesignated(LV2_CORE_PREFIX "enabled") ? 1.0F : 0.0F;
        const float above = std::max(fallback, number(owned[1], fallback));
        port.defaultValue = number(owned[0], std::min(above, number(owned[2], above)));
        port.minimum = number(owned[1], port.minimum);
        port.maximum = number(owned[2], port.maximum);
        port.scalesWithRate = hasProperty(LV2_CORE__sampleRate);
        port.reportsLatency = !port.isInput && (isDesignated(LV2_CORE__latency) ||
                                                hasProperty(LV2_CORE__reportsLatency));
    }

    void readSequence(LV2Port& port) const {
        const auto size = value(LV2_RESIZE_PORT__minimumSize);
        const bool isNumber = size != nullptr && lilv_node_is_int(size.get());
        const int wanted = isNumber ? lilv_node_as_int(size.get()) : 0;
        port.bufferSize =
            static_cast<std::uint32_t>(std::clamp(wanted, kSequenceSize, kLargestSequenceSize));
        port.carriesMIDI = supports(LV2_MIDI__MidiEvent);
        port.takesTimePosition = port.isInput && supports(LV2_TIME__Position);
    }

    const LV2World::Access& access_;
    const LilvPlugin* plugin_;
    const LilvPort* port_;
    std::uint32_t index_;
};

}  // namespace

std::vector<LV2Port> readPorts(const LV2World::Access& access, const LilvPlugin* plugin,
                               const std::string& uri) {
    checkIndices(access, plugin, uri);
    const auto count = lilv_plugin_get_num_ports(plugin);
    if (count == 0) {
        throw lv2Error(LV2ErrorCode::unsupportedPort, uri, "the data of its ports are wrong");
    }
    std::vector<LV2Port> ports;
    ports.reserve(count);
    for (std::uint32_t index = 0; index < count; ++index) {
        ports.push_back(PortReader(access, plugin, index).read(uri));
    }
    return ports;
}

}  // namespace orvalo
