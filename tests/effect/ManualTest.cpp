#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;

/// A row of the manual's table of controls.
struct Row {
    std::string range;
    std::string start;
    bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.range << " | " << row.start;
}

/// The texts that the manual must have for the ports of the bundle.
class ManualTest : public testing::Test {
  protected:
    std::string unit(const LilvPort* port) const {
        const Node unit(lilv_port_get(
            plugin_, port, world_.uri("http://lv2plug.in/ns/extensions/units#unit").get()));
        if (unit == nullptr) {
            return "";
        }
        static const std::map<std::string, std::string> texts{
            {"db", " dB"}, {"ms", " ms"}, {"pc", " %"}, {"hz", " Hz"}, {"bpm", " BPM"}};
        const std::string name = lilv_node_as_uri(unit.get());
        const auto found = texts.find(name.substr(name.find('#') + 1));
        return found == texts.end() ? "" : found->second;
    }

    /// The labels of a choice, by their values.
    std::map<float, std::string> labels(const LilvPort* port) const {
        std::map<float, std::string> result;
        LilvScalePoints* points = lilv_port_get_scale_points(plugin_, port);
        LILV_FOREACH(scale_points, i, points) {
            const auto* point = lilv_scale_points_get(points, i);
            result[lilv_node_as_float(lilv_scale_point_get_value(point))] =
                lilv_node_as_string(lilv_scale_point_get_label(point));
        }
        lilv_scale_points_free(points);
        return result;
    }

    bool has(const LilvPort* port, const char* property) const {
        return lilv_port_has_property(plugin_, port, world_.uri(property).get());
    }

    static std::string number(float value) {
        std::ostringstream text;
        text << std::abs(value);
        return (value < 0.0F ? "\u2212" : "") + text.str();
    }

    Row expected(const LilvPort* port, const orvalo::effect::ParameterRange& range) const {
        if (has(port, LV2_CORE__toggled)) {
            return {.range = "on, off", .start = range.standard > 0.0F ? "on" : "off"};
        }
        if (has(port, LV2_CORE__enumeration)) {
            const auto all = labels(port);
            std::string texts;
            for (const auto& [value, label] : all) {
                texts += (texts.empty() ? "" : ", ") + label;
            }
            // Too many for a list.
            const bool isLong = all.size() > 5;
            return {.range = isLong ? all.begin()->second + " to " + all.rbegin()->second : texts,
                    .start = all.at(range.standard)};
        }
        if (std::string(range.symbol) == "midi_channel") {
            return {.range = "All, 1 to 16", .start = "All"};
        }
        if (std::string(range.symbol) == "ratio") {
            return {.range = "1:1 to 20:1", .start = "4:1"};
        }
        return {.range = number(range.minimum) + " to " + number(range.maximum) + unit(port),
                .start = number(range.standard) + unit(port)};
    }

    EffectWorld& world_ = EffectWorld::shared();
    const LilvPlugin* plugin_ = world_.plugin();
};

TEST_F(ManualTest, HasEveryControlWithItsRangeAndUnit) {
    std::ifstream file(EFFECT_MANUAL);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const auto first = page.find("<table class=\"controls\">");
    ASSERT_NE(first, std::string::npos);
    const std::string table = page.substr(first, page.find("</table>", first) - first);
    const std::regex pattern(
        "<tr><th scope=\"row\">([^<]*)</th><td class=\"range\">([^<]*)</td>"
        "<td class=\"start\">([^<]*)</td>");
    std::map<std::string, Row> rows;
    for (std::sregex_iterator i(table.begin(), table.end(), pattern), end; i != end; ++i) {
        rows[(*i)[1]] = {.range = (*i)[2], .start = (*i)[3]};
    }
    std::map<std::string, Row> wanted;
    for (const auto& range : orvalo::effect::parameterRanges) {
        const auto* port = lilv_plugin_get_port_by_index(plugin_, range.port);
        const Node name(lilv_port_get_name(plugin_, port));
        wanted[lilv_node_as_string(name.get())] = expected(port, range);
    }
    EXPECT_EQ(rows, wanted);
}

TEST_F(ManualTest, ShowsEveryPresetWithItsDescription) {
    std::ifstream file(EFFECT_MANUAL);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    LilvNodes* presets = lilv_plugin_get_related(
        plugin_, world_.uri("http://lv2plug.in/ns/ext/presets#Preset").get());
    EXPECT_EQ(lilv_nodes_size(presets), 21U);
    LILV_FOREACH(nodes, i, presets) {
        const auto* preset = lilv_nodes_get(presets, i);
        lilv_world_load_resource(world_.world(), preset);
        const auto text = [&](const char* property) {
            const Node node(
                lilv_world_get(world_.world(), preset, world_.uri(property).get(), nullptr));
            return std::string(lilv_node_as_string(node.get()));
        };
        const auto item = "<li><strong>" + text(LILV_NS_RDFS "label") + "</strong><br/>" +
                          text(LILV_NS_RDFS "comment") + "</li>";
        EXPECT_NE(page.find(item), std::string::npos) << item;
    }
    lilv_nodes_free(presets);
}

}  // namespace
