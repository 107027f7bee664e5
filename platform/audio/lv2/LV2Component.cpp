#include "platform/audio/lv2/LV2Component.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <stdexcept>

namespace orvalo {

namespace {

/// The values that one bundle states of one plug-in, by predicate.
using Values = std::map<std::string, std::vector<std::string>>;

/// Why codes cannot be used; never thrown out of this file.
struct Unusable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::optional<std::string> single(const Values& values, const std::string& predicate) {
    const auto found = values.find(predicate);
    if (found == values.end()) {
        return std::nullopt;
    }
    if (found->second.size() != 1) {
        throw Unusable("its " + predicate + " is stated more than once");
    }
    return found->second.front();
}

std::uint32_t code(const Values& values, const std::string& predicate) {
    const auto text = single(values, predicate);
    if (!text) {
        throw Unusable("its " + predicate + " is missing");
    }
    const bool isASCII =
        std::all_of(text->begin(), text->end(), [](char c) { return g_ascii_isprint(c) != FALSE; });
    if (text->size() != 4 || !isASCII) {
        throw Unusable("its " + predicate + " \"" + *text + "\" is no code of four characters");
    }
    return fourCharCode(*text);
}

std::uint32_t flags(const Values& values) {
    const auto text = single(values, "flags");
    if (!text) {
        return 0;
    }
    std::uint32_t result = 0;
    const char* end = text->data() + text->size();
    const auto [stop, error] = std::from_chars(text->data(), end, result);
    if (error != std::errc() || stop != end) {
        throw Unusable("its flags \"" + *text + "\" are no integer of 32 bits");
    }
    return result;
}

std::shared_ptr<AVAudioUnitComponent> component(const std::string& uri, const Values& values) {
    const AudioComponentDescription description{code(values, "type"), code(values, "subtype"),
                                                code(values, "manufacturer"), flags(values), 0};
    return std::make_shared<AVAudioUnitComponent>(description, single(values, "name").value_or(""),
                                                  uri);
}

std::map<std::string, Values> valuesByPlugin(const LV2Bundle& bundle) {
    std::map<std::string, Values> result;
    for (const auto& statement : bundle.codes) {
        if (statement.plugin.empty()) {
            g_warning("%s states the codes of a subject without a URI.", bundle.path.c_str());
        } else if (!statement.isLiteral) {
            g_warning("%s states %s of <%s> as something that is no literal.", bundle.path.c_str(),
                      statement.key.c_str(), statement.plugin.c_str());
        } else {
            result[statement.plugin][statement.key].push_back(statement.value);
        }
    }
    return result;
}

}  // namespace

std::vector<std::shared_ptr<AVAudioUnitComponent>> statedComponents(
    const std::vector<LV2Bundle>& bundles) {
    std::map<std::string, std::shared_ptr<AVAudioUnitComponent>> found;
    for (const auto& bundle : bundles) {
        for (const auto& [uri, values] : valuesByPlugin(bundle)) {
            if (found.contains(uri)) {
                g_warning("%s states codes of <%s>, which an earlier bundle on the path states.",
                          bundle.path.c_str(), uri.c_str());
                continue;
            }
            try {
                found.emplace(uri, component(uri, values));
            } catch (const Unusable& reason) {
                g_warning("The codes that %s states of <%s> are left out: %s.", bundle.path.c_str(),
                          uri.c_str(), reason.what());
            }
        }
    }
    std::vector<std::shared_ptr<AVAudioUnitComponent>> result;
    result.reserve(found.size());
    for (auto& [uri, item] : found) {
        result.push_back(std::move(item));
    }
    return result;
}

}  // namespace orvalo
