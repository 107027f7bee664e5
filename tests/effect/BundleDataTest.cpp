#include <gtest/gtest.h>
#include <lv2/core/lv2.h>

#include <set>
#include <string>
#include <vector>

#include "effect/Readings.h"
#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;

class BundleDataTest : public testing::Test {
  protected:
    /// The values of a property as text.
    std::vector<std::string> values(const LilvNode* subject, const std::string& property) const {
        const Node predicate = world.uri(property);
        LilvNodes* nodes = lilv_world_find_nodes(world.world(), subject, predicate.get(), nullptr);
        std::vector<std::string> texts;
        LILV_FOREACH(nodes, i, nodes) {
            texts.emplace_back(lilv_node_as_string(lilv_nodes_get(nodes, i)));
        }
        lilv_nodes_free(nodes);
        return texts;
    }

    std::vector<std::string> codes(const std::string& name) const {
        return values(lilv_plugin_get_uri(plugin), "urn:tessaly:audio-component#" + name);
    }

    const LilvPort* port(std::uint32_t index) const {
        return lilv_plugin_get_port_by_index(plugin, index);
    }

    std::string symbol(const LilvPort* port) const {
        return lilv_node_as_string(lilv_port_get_symbol(plugin, port));
    }

    bool is(const LilvPort* port, const std::string& type) const {
        return lilv_port_is_a(plugin, port, world.uri(type).get());
    }

    bool has(const LilvPort* port, const std::string& property) const {
        return lilv_port_has_property(plugin, port, world.uri(property).get());
    }

    /// Whether a control is a switch, a choice or a count.
    bool isPlainNumber(const LilvPort* port) const {
        const std::string text = symbol(port);
        return has(port, LV2_CORE__toggled) || has(port, LV2_CORE__enumeration) ||
               text.starts_with("midi_") || text == "run_count";
    }

    EffectWorld& world = EffectWorld::shared();
    const LilvPlugin* plugin = world.plugin();
    using Texts = std::vector<std::string>;
};

TEST_F(BundleDataTest, StatesItsComponentCodes) {
    EXPECT_EQ(codes("type"), Texts{"aumf"});
    EXPECT_EQ(codes("subtype"), Texts{"orVL"});
    EXPECT_EQ(codes("manufacturer"), Texts{"TSLY"});
    EXPECT_EQ(codes("flags"), Texts{"2"});
    EXPECT_EQ(codes("name"), Texts{"TSLY: Orvalo Extension"});
}

TEST_F(BundleDataTest, RequiresNoFeatureAndVerifies) {
    LilvNodes* required = lilv_plugin_get_required_features(plugin);
    EXPECT_EQ(lilv_nodes_size(required), 0U);
    lilv_nodes_free(required);
    EXPECT_TRUE(lilv_plugin_verify(plugin));
    ASSERT_TRUE(lilv_plugin_has_latency(plugin));
    EXPECT_EQ(lilv_plugin_get_latency_port_index(plugin), 42U);
}

// lv2apply, GStreamer and others run only effects with as many inputs as outputs.
TEST_F(BundleDataTest, OnlyASecondPlugInHasASideChainInput) {
    const auto symbols = [&](const LilvPlugin* of) {
        Texts result;
        for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(of); ++i) {
            result.emplace_back(lilv_node_as_string(
                lilv_port_get_symbol(of, lilv_plugin_get_port_by_index(of, i))));
        }
        return result;
    };
    const auto* other = world.sideChainPlugin();
    EXPECT_TRUE(lilv_plugin_verify(other));
    Texts expected = symbols(plugin);
    expected.insert(expected.end(), {"sc_in_left", "sc_in_right"});
    EXPECT_EQ(symbols(other), expected);
    EXPECT_EQ(world.presets(other), world.presets());
    EXPECT_EQ(values(lilv_plugin_get_uri(other), "urn:tessaly:audio-component#type"), Texts{});

    const Node audio = world.uri(LILV_URI_AUDIO_PORT);
    const Node input = world.uri(LILV_URI_INPUT_PORT);
    const Node sideChain = world.uri(LV2_CORE_PREFIX "isSideChain");
    const Node optional = world.uri(LV2_CORE__connectionOptional);
    EXPECT_EQ(lilv_plugin_get_num_ports_of_class(plugin, audio.get(), input.get(), nullptr), 2U);
    for (const std::uint32_t i : {52U, 53U}) {
        const auto* port = lilv_plugin_get_port_by_index(other, i);
        EXPECT_TRUE(lilv_port_is_a(other, port, audio.get())) << i;
        EXPECT_TRUE(lilv_port_is_a(other, port, input.get())) << i;
        EXPECT_TRUE(lilv_port_has_property(other, port, sideChain.get())) << i;
        EXPECT_TRUE(lilv_port_has_property(other, port, optional.get())) << i;
    }
}

TEST_F(BundleDataTest, MidiOutputHasItsName) {
    Texts names;
    const Node midi = world.uri(LILV_URI_MIDI_EVENT);
    for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
        if (is(port(i), LILV_URI_OUTPUT_PORT) &&
            lilv_port_supports_event(plugin, port(i), midi.get())) {
            const Node name(lilv_port_get_name(plugin, port(i)));
            names.emplace_back(lilv_node_as_string(name.get()));
        }
    }
    EXPECT_EQ(names, Texts{"Gain Reduction Trigger"});
}

TEST_F(BundleDataTest, EveryPortIsFullyDescribed) {
    std::set<std::string> symbols;
    std::set<std::string> names;
    const auto count = lilv_plugin_get_num_ports(plugin);
    ASSERT_EQ(count, 52U);
    std::vector<float> least(count);
    std::vector<float> most(count);
    std::vector<float> standard(count);
    lilv_plugin_get_port_ranges_float(plugin, least.data(), most.data(), standard.data());
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string text = symbol(port(i));
        EXPECT_TRUE(symbols.insert(text).second) << text;
        const Node name(lilv_port_get_name(plugin, port(i)));
        EXPECT_TRUE(names.insert(lilv_node_as_string(name.get())).second) << text;
        if (!is(port(i), LILV_URI_CONTROL_PORT)) {
            continue;
        }
        EXPECT_LT(least[i], most[i]) << text;
        EXPECT_LE(least[i], standard[i]) << text;
        EXPECT_GE(most[i], standard[i]) << text;
        const Node unit(lilv_port_get(
            plugin, port(i), world.uri("http://lv2plug.in/ns/extensions/units#unit").get()));
        // Switches, choices and counts have no unit.
        EXPECT_EQ(unit == nullptr, isPlainNumber(port(i))) << text;
        const Node comment(lilv_port_get(plugin, port(i), world.uri(LILV_NS_RDFS "comment").get()));
        EXPECT_NE(comment, nullptr) << text;
    }
}

TEST_F(BundleDataTest, PortsMatchTheCode) {
    for (std::uint32_t i = 0; i < orvalo::effect::parameterCount; ++i) {
        const auto& range = orvalo::effect::parameterRanges.at(i);
        LilvNode* standard = nullptr;
        LilvNode* least = nullptr;
        LilvNode* most = nullptr;
        const LilvPort* at = port(range.port);
        lilv_port_get_range(plugin, at, &standard, &least, &most);
        EXPECT_EQ(symbol(at), range.symbol);
        EXPECT_EQ(lilv_node_as_float(standard), range.standard) << range.symbol;
        EXPECT_EQ(lilv_node_as_float(least), range.minimum) << range.symbol;
        EXPECT_EQ(lilv_node_as_float(most), range.maximum) << range.symbol;
        lilv_node_free(standard);
        lilv_node_free(least);
        lilv_node_free(most);
    }
    for (const auto& reading : orvalo::effect::readingPorts) {
        EXPECT_EQ(symbol(port(reading.port)), reading.symbol);
        EXPECT_TRUE(is(port(reading.port), LILV_URI_OUTPUT_PORT)) << reading.symbol;
    }
}

TEST_F(BundleDataTest, TimesAndRatioAreLogarithmic) {
    const Node logarithmic = world.uri("http://lv2plug.in/ns/ext/port-props#logarithmic");
    std::set<std::string> found;
    for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
        if (lilv_port_has_property(plugin, port(i), logarithmic.get())) {
            found.insert(symbol(port(i)));
        }
    }
    EXPECT_EQ(found, (std::set<std::string>{"attack", "duck_release", "ratio", "release",
                                            "rms_window", "sc_highpass", "sc_lowpass"}));
}

TEST_F(BundleDataTest, EnabledIsDesignatedAsBypass) {
    const LilvPort* enabled = lilv_plugin_get_port_by_designation(
        plugin, world.uri(LILV_URI_INPUT_PORT).get(), world.uri(LILV_NS_LV2 "enabled").get());
    ASSERT_NE(enabled, nullptr);
    EXPECT_EQ(symbol(enabled), "enabled");
}

TEST_F(BundleDataTest, ScalePointsLieInTheirRange) {
    for (std::uint32_t i = 0; i < orvalo::effect::parameterCount; ++i) {
        const auto& range = orvalo::effect::parameterRanges.at(i);
        LilvScalePoints* points = lilv_port_get_scale_points(plugin, port(range.port));
        LILV_FOREACH(scale_points, j, points) {
            const float value =
                lilv_node_as_float(lilv_scale_point_get_value(lilv_scale_points_get(points, j)));
            EXPECT_EQ(range.clamp(value), value) << range.symbol;
        }
        lilv_scale_points_free(points);
    }
}

}  // namespace
