#include "programs/defaults/format/JSONForm.h"

#include <glib.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/PropertyListDate.h"

namespace orvalo {

// Called by the library for each element of a list or a dictionary.
static void to_json(nlohmann::json& json, const PropertyList& value);

namespace {

using nlohmann::json;
using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

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
    try {
        return json::parse(text);
    } catch (const json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..."
        const std::string_view said = error.what();
        constexpr std::size_t mostSaid = 200;
        const auto at = said.find("line ");
        throw std::runtime_error(
            std::string(said.substr(at == std::string_view::npos ? 0 : at, mostSaid)) + ".");
    }
}

PropertyList valueOf(const json& value, int depth);

Dictionary entriesOf(const json& object, int depth) {
    Dictionary entries;
    for (const auto& [key, value] : object.items()) {
        entries.emplace(key, valueOf(value, depth));
    }
    return entries;
}

PropertyList objectValue(const json& object, int depth) {
    const bool isForm = object.size() == 1 && object.begin().key().starts_with('$');
    if (!isForm) {
        return entriesOf(object, depth);
    }
    const auto& form = object.begin().key();
    const auto& content = object.begin().value();
    if (form == kWrapped && content.is_object()) {
        return entriesOf(content, depth);
    }
    const auto value =
        content.is_string() ? formValue(form, content.get<std::string>()) : std::nullopt;
    if (!value) {
        throw std::runtime_error("this is no form of " + inQuotes(form) +
                                 "; see orvalo-defaults(1).");
    }
    return *value;
}

/// depth: how many lists and dictionaries the value lies in.
PropertyList valueOf(const json& value, int depth) {
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
                throw std::runtime_error("the number " + value.dump() + " has more than 64 bits.");
            }
            return value.get<std::int64_t>();
        case json::value_t::array: {
            List list;
            for (const auto& element : value) {
                list.push_back(valueOf(element, depth + 1));
            }
            return list;
        }
        case json::value_t::object:
            return objectValue(value, depth + 1);
        default:
            throw std::runtime_error("null is no value of a domain.");
    }
}

/// JSON lets the control characters from U+007F to U+009F stand.
std::string written(const json& value) {
    return escaped(value.dump(2), "\\\n");
}

}  // namespace

void to_json(json& json, const PropertyList& value) {
    json = std::visit(Writer(), value.value());
}

std::string jsonText(const PropertyList& value) {
    return written(value);
}

std::string jsonText(const Dictionary& domain) {
    return written(domain);
}

PropertyList jsonValue(std::string_view text) {
    return valueOf(parsed(text), 0);
}

Dictionary jsonDomain(std::string_view text) {
    const auto object = parsed(text);
    if (!object.is_object()) {
        throw std::runtime_error("it holds no object of keys and values.");
    }
    Dictionary entries;
    for (const auto& [key, value] : object.items()) {
        try {
            entries.emplace(key, valueOf(value, 1));
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(inQuotes(key).append(": ").append(error.what()));
        }
    }
    return entries;
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

std::string escaped(std::string_view text, std::string_view kept) {
    const GText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string result;
    const char* next = nullptr;
    for (const char* at = valid.get(); *at != '\0'; at = next) {
        next = g_utf8_next_char(at);
        const auto character = g_utf8_get_char(at);
        if (kept.find(*at) != std::string_view::npos) {
            result += *at;
        } else if (character == '\\') {
            result += "\\\\";
        } else if (character == '\n') {
            result += "\\n";
        } else if (g_unichar_iscntrl(character) != FALSE) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", character);
            result += code.data();
        } else {
            result.append(at, next);
        }
    }
    return result;
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t mostQuoted = 60;
    return "'" + std::string(text.substr(0, mostQuoted)) +
           (text.size() > mostQuoted ? "...'" : "'");
}

}  // namespace orvalo
