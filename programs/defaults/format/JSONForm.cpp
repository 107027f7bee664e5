#include "programs/defaults/format/JSONForm.h"

#include <glib.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/PropertyListDate.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

using nlohmann::json;
using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

constexpr auto kWrapped = "$dictionary";

struct Writer {
    json operator()(double value) const {
        if (std::isfinite(value)) {
            return value;
        }
        return {{"$real", std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf")}};
    }
    json operator()(const Data& value) const {
        return {{"$data", GText(g_base64_encode(value.data(), value.size())).get()}};
    }
    json operator()(PropertyList::Date value) const {
        return {{"$date", GText(g_date_time_format_iso8601(dateTimeOf(value).get())).get()}};
    }
    json operator()(const List& list) const {
        auto array = json::array();
        for (const auto& element : list) {
            array.push_back(std::visit(Writer(), element.value()));
        }
        return array;
    }
    json operator()(const Dictionary& dictionary) const {
        auto object = objectOf(dictionary);
        const bool isLikeAForm =
            dictionary.size() == 1 && dictionary.begin()->first.starts_with('$');
        return isLikeAForm ? json{{kWrapped, std::move(object)}} : object;
    }
    template <typename Plain>
    json operator()(const Plain& value) const {
        return value;
    }

    static json objectOf(const Dictionary& dictionary) {
        auto object = json::object();
        for (const auto& [key, value] : dictionary) {
            object[key] = std::visit(Writer(), value.value());
        }
        return object;
    }
};

[[noreturn]] void fail(const std::string& place, const std::string& reason) {
    throw std::runtime_error(place + (place.empty() ? "" : ": ") + reason);
}

json parsed(std::string_view text) {
    // The library keeps the last of two equal keys.
    std::vector<std::set<std::string>> keys;
    const auto refuseRepeatedKeys = [&](int /*depth*/, json::parse_event_t event, json& value) {
        if (event == json::parse_event_t::object_start) {
            keys.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            keys.pop_back();
        } else if (event == json::parse_event_t::key &&
                   !keys.back().insert(value.get<std::string>()).second) {
            throw std::runtime_error("the key " + inQuotes(value.get<std::string>()) +
                                     " stands twice.");
        }
        return true;
    };
    try {
        return json::parse(text, refuseRepeatedKeys);
    } catch (const json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..."
        const std::string_view said = error.what();
        constexpr std::size_t mostSaid = 200;
        const auto at = said.find("line ");
        throw std::runtime_error(
            escaped(said.substr(at == std::string_view::npos ? 0 : at, mostSaid)) + ".");
    }
}

/// The value at a place. depth: how many lists and dictionaries it lies in.
PropertyList valueOf(const json& value, const std::string& place, int depth);

Dictionary entriesOf(const json& object, const std::string& place, int depth) {
    Dictionary entries;
    for (const auto& [key, value] : object.items()) {
        entries.emplace(
            key, valueOf(value, place + (place.empty() ? "" : ", ") + inQuotes(key), depth + 1));
    }
    return entries;
}

PropertyList objectValue(const json& object, const std::string& place, int depth) {
    const bool isForm = object.size() == 1 && object.begin().key().starts_with('$');
    if (!isForm) {
        return entriesOf(object, place, depth);
    }
    const auto& form = object.begin().key();
    const auto& content = object.begin().value();
    if (form == kWrapped && content.is_object()) {
        return entriesOf(content, place, depth);
    }
    const auto value =
        content.is_string() ? formValue(form, content.get<std::string>()) : std::nullopt;
    if (!value) {
        fail(place, "this is no form of " + inQuotes(form) + "; see orvalo-defaults(1).");
    }
    return *value;
}

PropertyList valueOf(const json& value, const std::string& place, int depth) {
    constexpr int mostDepth = 200;  // Far above the store's limit; this recursion has one, too.
    if (depth > mostDepth) {
        throw std::runtime_error("it is nested too deeply.");
    }
    switch (value.type()) {
        case json::value_t::boolean:
            return value.get<bool>();
        case json::value_t::string:
            return value.get<std::string>();
        case json::value_t::number_float:
            return value.get<double>();
        case json::value_t::number_integer:
            return value.get<std::int64_t>();
        case json::value_t::number_unsigned:
            if (value.get<std::uint64_t>() > INT64_MAX) {
                fail(place, "the number " + value.dump() + " has more than 64 bits.");
            }
            return value.get<std::int64_t>();
        case json::value_t::array: {
            List list;
            for (const auto& element : value) {
                list.push_back(valueOf(element,
                                       place + (place.empty() ? "element " : ", element ") +
                                           std::to_string(list.size() + 1),
                                       depth + 1));
            }
            return list;
        }
        case json::value_t::object:
            return objectValue(value, place, depth);
        default:
            fail(place, "null is no value of a domain.");
    }
}

}  // namespace

// JSON lets the control characters from U+007F to U+009F stand.

std::string jsonText(const PropertyList& value) {
    return withoutControls(std::visit(Writer(), value.value()).dump(2));
}

std::string jsonText(const Dictionary& domain) {
    return withoutControls(Writer::objectOf(domain).dump(2));
}

PropertyList jsonValue(std::string_view text) {
    return valueOf(parsed(text), {}, 0);
}

Dictionary jsonDomain(std::string_view text) {
    const auto value = parsed(text);
    if (!value.is_object()) {
        throw std::runtime_error("it holds no object of keys and values.");
    }
    return entriesOf(value, {}, 0);
}

std::optional<PropertyList> formValue(std::string_view form, const std::string& text) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::optional<PropertyList> value;
    if (form == "$date") {
        const std::unique_ptr<GTimeZone, Release<g_time_zone_unref>> utc(g_time_zone_new_utc());
        if (const GDateTimePointer date{g_date_time_new_from_iso8601(text.c_str(), utc.get())}) {
            value = dateOf(date.get());
        }
    } else if (form == "$data") {
        gsize size = 0;
        const std::unique_ptr<guchar, Release<g_free>> bytes(g_base64_decode(text.c_str(), &size));
        // GLib skips what is no Base64.
        if (GText(g_base64_encode(bytes.get(), size)).get() == text) {
            value = Data(bytes.get(), bytes.get() + size);
        }
    } else if (form == "$real" && (text == "inf" || text == "-inf")) {
        value = text == "inf" ? infinity : -infinity;
    } else if (form == "$real" && text == "nan") {
        value = std::numeric_limits<double>::quiet_NaN();
    }
    return value;
}

}  // namespace orvalo
