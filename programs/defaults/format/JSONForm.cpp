#include "programs/defaults/format/JSONForm.h"

#include <glib.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/defaults/PropertyListDate.h"

using nlohmann::json;

/// How the library converts values, also those in lists and dictionaries.
template <>
struct nlohmann::adl_serializer<orvalo::PropertyList> {
    static void to_json(json& target, const orvalo::PropertyList& value);
    static orvalo::PropertyList from_json(const json& source);
};

namespace orvalo {

namespace {

using Dictionary = PropertyList::Dictionary;

constexpr auto kWrapped = "$dictionary";

/// For std::visit.
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
    json operator()(const Dictionary& dictionary) const {
        const bool isLikeAForm =
            dictionary.size() == 1 && dictionary.begin()->first.starts_with('$');
        return isLikeAForm ? json{{kWrapped, json(dictionary)}} : json(dictionary);
    }
    template <typename Other>
    json operator()(const Other& value) const {
        return value;
    }
};

json parsed(std::string_view text) {
    const auto checkDepth = [](int depth, json::parse_event_t /*event*/, json& /*value*/) {
        constexpr int mostDepth = 200;  // Far above the store's limit. Converting recurses.
        if (depth > mostDepth) {
            throw std::runtime_error("it is nested too deeply.");
        }
        return true;
    };
    try {
        return json::parse(text, checkDepth);
    } catch (const json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..." or
        // "[json.exception.out_of_range.406] number overflow parsing ...".
        std::string said = error.what();
        for (const auto* beginning : {"] ", "parse error at "}) {
            const auto at = said.find(beginning);
            said.erase(0, at == std::string::npos ? 0 : at + std::strlen(beginning));
        }
        constexpr std::size_t mostSaid = 200;
        throw std::runtime_error(said.substr(0, mostSaid) + ".");
    }
}

PropertyList objectValue(const json& object) {
    if (object.size() != 1 || !object.begin().key().starts_with('$')) {
        return object.get<Dictionary>();
    }
    const auto& form = object.begin().key();
    const auto& content = object.begin().value();
    if (form == kWrapped && content.is_object()) {
        return content.get<Dictionary>();
    }
    const auto value =
        content.is_string() ? formValue(form, content.get<std::string>()) : std::nullopt;
    if (!value) {
        throw std::runtime_error("this is no form of " + inQuotes(form) +
                                 "; see orvalo-defaults(1).");
    }
    return *value;
}

std::string written(const json& value) {
    // The library lets the control characters from U+007F to U+009F stand.
    std::istringstream lines(value.dump(2));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        text.append(text.empty() ? "" : "\n").append(onOneLine(line));
    }
    return text;
}

}  // namespace

std::string jsonText(const PropertyList& value) {
    return written(value);
}

std::string jsonText(const Dictionary& domain) {
    return written(domain);
}

PropertyList jsonValue(std::string_view text) {
    return parsed(text).get<PropertyList>();
}

Dictionary jsonDomain(std::string_view text) {
    const auto object = parsed(text);
    if (!object.is_object()) {
        throw std::runtime_error("it holds no object of keys and values.");
    }
    Dictionary entries;
    for (const auto& [key, value] : object.items()) {
        try {
            entries.emplace(key, value.get<PropertyList>());
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(inQuotes(key).append(": ").append(error.what()));
        }
    }
    return entries;
}

std::optional<PropertyList> formValue(std::string_view form, const std::string& text) {
    if (form == "$date") {
        const std::unique_ptr<GTimeZone, Release<g_time_zone_unref>> utc(g_time_zone_new_utc());
        const GDateTimePointer date(g_date_time_new_from_iso8601(text.c_str(), utc.get()));
        return date ? std::optional<PropertyList>(dateOf(date.get())) : std::nullopt;
    }
    if (form == "$data") {
        gsize size = 0;
        const std::unique_ptr<guchar, Release<g_free>> bytes(g_base64_decode(text.c_str(), &size));
        // GLib skips what is no Base64.
        const bool isBase64 = GText(g_base64_encode(bytes.get(), size)).get() == text;
        return isBase64 ? std::optional<PropertyList>(Data(bytes.get(), bytes.get() + size))
                        : std::nullopt;
    }
    double value = 0.0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    const bool isReal = form == "$real" && error == std::errc() && stop == end;
    return isReal ? std::optional<PropertyList>(value) : std::nullopt;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t mostQuoted = 60;
    return "'" + std::string(text.substr(0, mostQuoted)) +
           (text.size() > mostQuoted ? "...'" : "'");
}

}  // namespace orvalo

void nlohmann::adl_serializer<orvalo::PropertyList>::to_json(json& target,
                                                             const orvalo::PropertyList& value) {
    target = std::visit(orvalo::Writer(), value.value());
}

orvalo::PropertyList nlohmann::adl_serializer<orvalo::PropertyList>::from_json(const json& source) {
    switch (source.type()) {
        case json::value_t::boolean:
            return source.get<bool>();
        case json::value_t::string:
            return source.get<std::string>();
        case json::value_t::number_float:
            return source.get<double>();
        case json::value_t::number_unsigned:
            if (source.get<std::uint64_t>() > INT64_MAX) {
                throw std::runtime_error("the number " + source.dump() + " has more than 64 bits.");
            }
            return source.get<std::int64_t>();
        case json::value_t::number_integer:
            return source.get<std::int64_t>();
        case json::value_t::array:
            return source.get<orvalo::PropertyList::List>();
        case json::value_t::object:
            return orvalo::objectValue(source);
        default:
            throw std::runtime_error("null is no value of a domain.");
    }
}
