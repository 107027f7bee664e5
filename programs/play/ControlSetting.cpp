#include "programs/play/ControlSetting.h"

#include <glib.h>
#include <lv2/core/lv2.h>
#include <lv2/units/units.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

/// A unit of LV2's vocabulary. Values in one dimension can be converted.
struct Unit {
    std::string_view name;
    std::string_view symbol;
    std::string_view dimension;
    double factor;
};

constexpr std::array<Unit, 18> kUnits{{{"db", "dB", "level", 1.0},
                                       {"hz", "Hz", "frequency", 1.0},
                                       {"khz", "kHz", "frequency", 1e3},
                                       {"mhz", "MHz", "frequency", 1e6},
                                       {"s", "s", "time", 1.0},
                                       {"ms", "ms", "time", 1e-3},
                                       {"min", "min", "time", 60.0},
                                       {"pc", "%", "share", 0.01},
                                       {"coef", "", "share", 1.0},
                                       {"m", "m", "length", 1.0},
                                       {"cm", "cm", "length", 0.01},
                                       {"mm", "mm", "length", 1e-3},
                                       {"km", "km", "length", 1e3},
                                       {"semitone12TET", "semi", "pitch", 1.0},
                                       {"cent", "ct", "pitch", 0.01},
                                       {"oct", "oct", "pitch", 12.0},
                                       {"degree", "deg", "angle", 1.0},
                                       {"bpm", "BPM", "tempo", 1.0}}};

bool isSame(std::string_view left, std::string_view right) {
    return left.size() == right.size() &&
           g_ascii_strncasecmp(left.data(), right.data(), left.size()) == 0;
}

const Unit* unitWith(std::string_view Unit::*field, std::string_view text) {
    const auto* found = std::ranges::find_if(
        kUnits, [&](const Unit& unit) { return !text.empty() && isSame(unit.*field, text); });
    return found == kUnits.end() ? nullptr : found;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string shortest(double value) {
    std::array<char, 32> text{};
    char* const end = std::to_chars(text.begin(), text.end(), static_cast<float>(value)).ptr;
    return {text.data(), end};
}

/// A control input with what its data say of its values.
class Control {
  public:
    Control(const LV2World::Access& access, const LilvPlugin* plugin, const LV2Port& port)
        : port_(port) {
        const auto* const lilvPort = lilv_plugin_get_port_by_index(plugin, port.index);
        const auto has = [&](const char* property) {
            return lilv_port_has_property(plugin, lilvPort, access.uri(property).get());
        };
        isSwitch_ = has(LV2_CORE__toggled);
        isWhole_ = has(LV2_CORE__integer);
        isEnumeration_ = has(LV2_CORE__enumeration);
        const std::unique_ptr<LilvScalePoints, void (*)(LilvScalePoints*)> points(
            lilv_port_get_scale_points(plugin, lilvPort), lilv_scale_points_free);
        LILV_FOREACH(scale_points, i, points.get()) {
            const auto* point = lilv_scale_points_get(points.get(), i);
            const auto* value = lilv_scale_point_get_value(point);
            labels_.emplace_back(lilv_node_as_string(lilv_scale_point_get_label(point)),
                                 lilv_node_as_float(value));
        }
        std::ranges::sort(labels_, {}, &Label::second);
        const LilvPointer<LilvNode> unit(
            lilv_port_get(plugin, lilvPort, access.uri(LV2_UNITS__unit).get()));
        if (unit != nullptr) {
            readUnit(access, unit.get());
        }
    }

    std::optional<float> value(std::string_view text) const {
        for (const auto& [label, value] : labels_) {
            if (isSame(label, text)) {
                return value;
            }
        }
        if (isSwitch_) {
            if (isSame(text, "on") || isSame(text, "off")) {
                return isSame(text, "on") ? 1.0F : 0.0F;
            }
        }
        double number = 0.0;
        const auto* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        const auto factor = factorOf(trimmed({stop, static_cast<std::size_t>(end - stop)}));
        if (error != std::errc() || !factor) {
            return std::nullopt;
        }
        const auto result = static_cast<float>(number * *factor);
        return isPossible(result) ? std::optional(result) : std::nullopt;
    }

    /// What value() takes.
    std::string wanted() const {
        if (isSwitch_) {
            return "on or off";
        }
        std::string text;
        if (isEnumeration_ && !labels_.empty()) {
            for (const auto& [label, value] : labels_) {
                text.append(text.empty() ? "one of " : ", ").append(label);
            }
            return text;
        }
        text = isWhole_ ? "a whole number" : "a number";
        if (isLimited()) {
            text += " from " + shortest(port_.minimum) + " to " + shortest(port_.maximum);
        }
        return symbol_.empty() ? text : text + " (" + symbol_ + ")";
    }

  private:
    using Label = std::pair<std::string, float>;

    void readUnit(const LV2World::Access& access, const LilvNode* unit) {
        const std::string_view uri = lilv_node_is_uri(unit) ? lilv_node_as_uri(unit) : "";
        if (uri.starts_with(LV2_UNITS_PREFIX)) {
            unit_ = unitWith(&Unit::name, uri.substr(std::string_view(LV2_UNITS_PREFIX).size()));
            symbol_ = unit_ == nullptr ? "" : unit_->symbol;
        } else {
            const LilvPointer<LilvNode> symbol(
                lilv_world_get(access.lilv(), unit, access.uri(LV2_UNITS__symbol).get(), nullptr));
            symbol_ = symbol == nullptr ? "" : lilv_node_as_string(symbol.get());
        }
    }

    /// What a number with that unit is multiplied with; absent for a unit that does not fit.
    std::optional<double> factorOf(std::string_view unit) const {
        if (unit.empty() || isSame(unit, trimmed(symbol_))) {
            return 1.0;
        }
        const auto* const given = unitWith(&Unit::symbol, unit);
        if (given == nullptr || unit_ == nullptr || given->dimension != unit_->dimension) {
            return std::nullopt;
        }
        return given->factor / unit_->factor;
    }

    bool isLimited() const {
        return !port_.scalesWithRate && std::isfinite(port_.minimum) &&
               std::isfinite(port_.maximum);
    }

    bool isPossible(float value) const {
        if (isSwitch_) {
            return value == 0.0F || value == 1.0F;
        }
        if (isEnumeration_ && !labels_.empty()) {
            return std::ranges::find(labels_, value, &Label::second) != labels_.end();
        }
        const bool isInside = !isLimited() || (value >= port_.minimum && value <= port_.maximum);
        return std::isfinite(value) && isInside && (!isWhole_ || value == std::round(value));
    }

    const LV2Port& port_;
    bool isSwitch_ = false;
    bool isWhole_ = false;
    bool isEnumeration_ = false;
    std::vector<Label> labels_;
    const Unit* unit_ = nullptr;
    std::string symbol_;  ///< Of the unit.
};

/// The number of letters to add, remove or change (Levenshtein).
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        auto diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < right.size(); ++j) {
            const bool isEqual = g_ascii_tolower(left[i]) == g_ascii_tolower(right[j]);
            const auto changed = diagonal + (isEqual ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::size_t nearest(const std::string& text, const std::vector<std::string>& names) {
    const auto lowered = [](const std::string& name) {
        return std::string(GText(g_ascii_strdown(name.c_str(), -1)).get());
    };
    const auto found = std::ranges::min_element(names, {}, [&](const std::string& name) {
        const bool contains = lowered(name).find(lowered(text)) != std::string::npos;
        return contains ? 0 : distance(text, name);
    });
    return static_cast<std::size_t>(found - names.begin());
}

ControlSetting readSetting(const LV2World::Access& access, const LV2PluginData& plugin,
                           const std::string& text) {
    const auto equals = text.find('=');
    if (equals == std::string::npos) {
        throw std::runtime_error("--set wants SYMBOL=VALUE, not '" + text + "'.");
    }
    const auto symbol = text.substr(0, equals);
    std::vector<const LV2Port*> controls;
    std::vector<std::string> symbols;
    for (const auto& port : plugin.ports) {
        if (port.kind == LV2PortKind::control && port.isInput) {
            controls.push_back(&port);
            symbols.push_back(port.symbol);
        }
    }
    if (controls.empty()) {
        throw std::runtime_error("--set: the effect has no controls.");
    }
    const auto at = nearest(symbol, symbols);
    if (symbols[at] != symbol) {
        throw std::runtime_error("--set: the effect has no control '" + symbol +
                                 "'; the nearest is '" + symbols[at] + "'.");
    }
    const Control control(access, access.plugin(plugin.uri), *controls[at]);
    const auto value = control.value(trimmed(std::string_view(text).substr(equals + 1)));
    if (!value) {
        throw std::runtime_error("--set: " + symbol + " wants " + control.wanted() + ", not '" +
                                 text.substr(equals + 1) + "'.");
    }
    return {symbol, *value};
}

}  // namespace orvalo
