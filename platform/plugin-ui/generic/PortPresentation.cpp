#include "platform/plugin-ui/generic/PortPresentation.h"

#include <glib.h>
#include <lv2/core/lv2.h>
#include <lv2/port-groups/port-groups.h>
#include <lv2/port-props/port-props.h>
#include <lv2/units/units.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

/// The symbols of the units that the units extension defines, whose data lilv has not loaded.
std::string knownSymbol(const std::string& unit) {
    static const std::map<std::string, std::string> symbols{
        {LV2_UNITS__bar, "bars"},  {LV2_UNITS__beat, "beats"},
        {LV2_UNITS__bpm, "BPM"},   {LV2_UNITS__cent, "ct"},
        {LV2_UNITS__cm, "cm"},     {LV2_UNITS__db, "dB"},
        {LV2_UNITS__degree, "°"},  {LV2_UNITS__frame, "frames"},
        {LV2_UNITS__hz, "Hz"},     {LV2_UNITS__inch, "in"},
        {LV2_UNITS__khz, "kHz"},   {LV2_UNITS__km, "km"},
        {LV2_UNITS__m, "m"},       {LV2_UNITS__mhz, "MHz"},
        {LV2_UNITS__midiNote, ""}, {LV2_UNITS__min, "min"},
        {LV2_UNITS__mm, "mm"},     {LV2_UNITS__ms, "ms"},
        {LV2_UNITS__oct, "oct"},   {LV2_UNITS__pc, "%"},
        {LV2_UNITS__s, "s"},       {LV2_UNITS__semitone12TET, "semitones"},
    };
    const auto found = symbols.find(unit);
    return found == symbols.end() ? "" : found->second;
}

/// Reads the presentation of one port.
class Reader {
  public:
    Reader(const LV2World::Access& access, const LilvPlugin* plugin, const LV2Port& port)
        : access_(access),
          plugin_(plugin),
          port_(port),
          node_(lilv_plugin_get_port_by_index(plugin, port.index)) {}

    bool isShown() const { return !has(LV2_PORT_PROPS__notOnGUI) && !port_.reportsLatency; }

    PortPresentation read(double sampleRate) const {
        PortPresentation result;
        result.index = port_.index;
        result.name = port_.name;
        result.isInput = port_.isInput;
        result.comment = text(value(LILV_NS_RDFS "comment").get());
        if (const auto group = value(LV2_PORT_GROUPS__group); group != nullptr) {
            result.group = nameOf(group.get());
        }
        result.unit = unit();
        const float factor = port_.scalesWithRate ? static_cast<float>(sampleRate) : 1.0F;
        result.defaultValue = port_.defaultValue * factor;
        // Where a bound is missing the range holds at least 0 to 1 and the default.
        result.minimum = std::isfinite(port_.minimum) ? port_.minimum * factor
                                                      : std::min(0.0F, result.defaultValue);
        result.maximum = std::isfinite(port_.maximum) ? port_.maximum * factor
                                                      : std::max(1.0F, result.defaultValue);
        if (!(result.maximum > result.minimum)) {
            result.maximum = result.minimum + 1.0F;
        }
        result.isLogarithmic = has(LV2_PORT_PROPS__logarithmic) && result.minimum > 0.0F;
        readKind(result);
        return result;
    }

  private:
    void readKind(PortPresentation& result) const {
        using enum PortPresentation::Kind;
        const std::unique_ptr<LilvScalePoints, void (*)(LilvScalePoints*)> points(
            lilv_port_get_scale_points(plugin_, node_), lilv_scale_points_free);
        LILV_FOREACH(scale_points, i, points.get()) {
            const auto* point = lilv_scale_points_get(points.get(), i);
            const auto* number = lilv_scale_point_get_value(point);
            if (number != nullptr && (lilv_node_is_float(number) || lilv_node_is_int(number))) {
                result.choices.push_back(
                    {lilv_node_as_float(number), text(lilv_scale_point_get_label(point))});
            }
        }
        std::sort(result.choices.begin(), result.choices.end(),
                  [](const auto& one, const auto& other) { return one.value < other.value; });
        if (has(LV2_PORT_PROPS__trigger)) {
            result.kind = trigger;
        } else if (has(LV2_CORE__toggled)) {
            result.kind = toggle;
        } else if (has(LV2_CORE__enumeration) && result.choices.size() > 1) {
            result.kind = choice;
        } else if (has(LV2_CORE__integer)) {
            result.kind = integer;
        }
    }

    std::string unit() const {
        const auto node = value(LV2_UNITS__unit);
        if (node == nullptr) {
            return "";
        }
        if (lilv_node_is_uri(node.get())) {
            const std::string uri = lilv_node_as_uri(node.get());
            if (auto symbol = knownSymbol(uri); !symbol.empty()) {
                return symbol;
            }
        }
        return text(of(node.get(), LV2_UNITS__symbol).get());
    }

    std::string nameOf(const LilvNode* subject) const {
        for (const auto* predicate : {LILV_NS_LV2 "name", LILV_NS_RDFS "label"}) {
            if (auto name = text(of(subject, predicate).get()); !name.empty()) {
                return name;
            }
        }
        return "";
    }

    bool has(const char* property) const {
        return lilv_port_has_property(plugin_, node_, access_.uri(property).get());
    }
    LilvPointer<LilvNode> value(const char* predicate) const {
        return LilvPointer<LilvNode>(lilv_port_get(plugin_, node_, access_.uri(predicate).get()));
    }
    LilvPointer<LilvNode> of(const LilvNode* subject, const char* predicate) const {
        const bool isResource = lilv_node_is_uri(subject) || lilv_node_is_blank(subject);
        return LilvPointer<LilvNode>(
            isResource
                ? lilv_world_get(access_.lilv(), subject, access_.uri(predicate).get(), nullptr)
                : nullptr);
    }
    /// A text that GTK can show.
    static std::string text(const LilvNode* node) {
        if (node == nullptr || !lilv_node_is_literal(node)) {
            return "";
        }
        return GText(g_utf8_make_valid(lilv_node_as_string(node), -1)).get();
    }

    const LV2World::Access& access_;
    const LilvPlugin* plugin_;
    const LV2Port& port_;
    const LilvPort* node_;
};

/// How many decimals tell apart some hundred places of the range.
int decimals(float minimum, float maximum) {
    const double range = double{maximum} - double{minimum};
    return range > 500 ? 0 : range > 20 ? 1 : range > 2 ? 2 : 3;
}

}  // namespace

std::string PortPresentation::text(float value) const {
    if (kind == Kind::toggle) {
        return value > 0.0F ? "On" : "Off";
    }
    for (const auto& choice : choices) {
        // Between the named values of a plain number there are others.
        if (kind != Kind::number && choice.value == value) {
            return choice.name;
        }
    }
    // Small values of a logarithmic range need more digits than large ones.
    const int digits = kind == Kind::integer ? 0
                       : isLogarithmic       ? decimals(0.0F, std::abs(value) * 10.0F)
                                             : decimals(minimum, maximum);
    std::string number = GText(g_strdup_printf("%.*f", digits, double{value})).get();
    return unit.empty() ? number : number + " " + unit;
}

double PortPresentation::place(float value) const {
    const double inside = std::clamp(double{value}, double{minimum}, double{maximum});
    return isLogarithmic
               ? std::log(inside / double{minimum}) / std::log(double{maximum} / double{minimum})
               : (inside - double{minimum}) / (double{maximum} - double{minimum});
}

float PortPresentation::valueAt(double place) const {
    const double value = isLogarithmic
                             ? double{minimum} * std::pow(double{maximum} / double{minimum}, place)
                             : double{minimum} + place * (double{maximum} - double{minimum});
    const double wanted = kind == Kind::integer ? std::round(value) : value;
    return std::clamp(static_cast<float>(wanted), minimum, maximum);
}

PluginPresentation PluginPresentation::read(LV2World& world, const LV2PluginData& plugin,
                                            double sampleRate) {
    const LV2World::Access access(world);
    const auto* found = access.plugin(plugin.uri);
    const LilvPointer<LilvNode> name(lilv_plugin_get_name(found));
    PluginPresentation result{
        .title = name == nullptr ? plugin.uri : lilv_node_as_string(name.get()), .ports = {}};
    for (const auto& port : plugin.ports) {
        if (port.kind == LV2PortKind::control) {
            const Reader reader(access, found, port);
            if (reader.isShown()) {
                result.ports.push_back(reader.read(sampleRate));
            }
        }
    }
    return result;
}

}  // namespace orvalo
