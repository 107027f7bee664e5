#include <cmath>
#include <nlohmann/json.hpp>

#include "programs/defaults/format/JSONForm.h"
#include "programs/defaults/format/ScalarText.h"

namespace orvalo {

namespace {

using nlohmann::json;

constexpr int kIndent = 2;

json jsonOf(const PropertyList& value);

json objectOf(const PropertyList::Dictionary& dictionary) {
    auto object = json::object();
    for (const auto& [key, value] : dictionary) {
        object[key] = jsonOf(value);
    }
    return object;
}

json form(const char* name, json content) {
    auto object = json::object();
    object[name] = std::move(content);
    return object;
}

struct Writer {
    json operator()(double value) const {
        return std::isfinite(value) ? json(value) : form("$real", realText(value));
    }
    json operator()(const Data& value) const { return form("$data", base64Text(value)); }
    json operator()(const PropertyList::Date& value) const {
        return form("$date", dateText(value));
    }
    json operator()(const PropertyList::List& list) const {
        auto array = json::array();
        for (const auto& element : list) {
            array.push_back(jsonOf(element));
        }
        return array;
    }
    json operator()(const PropertyList::Dictionary& dictionary) const {
        const bool looksLikeAForm =
            dictionary.size() == 1 && dictionary.begin()->first.starts_with('$');
        return looksLikeAForm ? form("$dictionary", objectOf(dictionary)) : objectOf(dictionary);
    }
    template <typename Plain>
    json operator()(const Plain& value) const {
        return value;
    }
};

json jsonOf(const PropertyList& value) {
    return std::visit(Writer(), value.value());
}

/// The control characters that JSON lets stand: U+007F to U+009F.
std::string withoutControls(const std::string& text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        const auto next = index + 1 < text.size() ? static_cast<unsigned char>(text[index + 1]) : 0;
        if (byte == 0x7F) {
            result += "\\u007f";
        } else if (byte == 0xC2 && next < 0xA0) {
            result +=
                std::string("\\u00") + (next < 0x90 ? '8' : '9') + "0123456789abcdef"[next & 0xFU];
            ++index;
        } else {
            result += text[index];
        }
    }
    return result;
}

}  // namespace

std::string jsonText(const PropertyList& value) {
    return withoutControls(jsonOf(value).dump(kIndent));
}

std::string jsonText(const PropertyList::Dictionary& domain) {
    return withoutControls(objectOf(domain).dump(kIndent));
}

}  // namespace orvalo
