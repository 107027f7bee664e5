#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"
#include "programs/defaults/format/JSONForm.h"
#include "programs/defaults/format/ScalarText.h"
#include "programs/defaults/format/ValueBuilder.h"

namespace orvalo {

namespace {

using nlohmann::json;

/// What the library says, in one line of a reasonable length.
std::string message(const std::string& said) {
    // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..."
    constexpr std::string_view kAt = " at ";
    const auto at = said.find(kAt);
    return shortened(at == std::string::npos ? said : said.substr(at + kAt.size())) + ".";
}

/// Hands what the library reads on to a builder.
class Reader : public nlohmann::json_sax<json> {
  public:
    PropertyList take() { return builder_.take(); }

    bool null() override { builder_.fail("null is no value of a domain."); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override {
        if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            builder_.fail("the number " + std::to_string(value) + " has more than 64 bits.");
        }
        return add(static_cast<std::int64_t>(value));
    }
    bool number_float(double value, const std::string& text) override {
        // The library reads whole numbers that are too great as floats.
        if (text.find_first_of(".eE") == std::string::npos) {
            builder_.fail("the number " + inQuotes(text) + " has more than 64 bits.");
        }
        return add(value);
    }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(json::binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override {
        builder_.beginDictionary();
        return true;
    }
    bool key(std::string& name) override {
        builder_.key(std::move(name));
        return true;
    }
    bool end_object() override {
        builder_.end();
        return true;
    }
    bool start_array(std::size_t /*size*/) override {
        builder_.beginList();
        return true;
    }
    bool end_array() override {
        builder_.end();
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& error) override {
        throw FormatError(message(error.what()));
    }

  private:
    bool add(PropertyList value) {
        builder_.add(std::move(value));
        return true;
    }

    ValueBuilder builder_;
};

PropertyList read(std::string_view text) {
    Reader reader;
    json::sax_parse(text.begin(), text.end(), &reader);
    return reader.take();
}

// Forms are looked for when all is read: whether an object is one depends on what stands around it.

PropertyList resolved(const PropertyList& value, const std::string& place);

PropertyList::Dictionary resolvedEntries(const PropertyList::Dictionary& dictionary,
                                         const std::string& place) {
    PropertyList::Dictionary result;
    for (const auto& [key, value] : dictionary) {
        result.emplace(key, resolved(value, place + (place.empty() ? "" : ", ") + inQuotes(key)));
    }
    return result;
}

PropertyList::List resolvedElements(const PropertyList::List& list, const std::string& place) {
    PropertyList::List result;
    for (const auto& element : list) {
        result.push_back(resolved(element, place + (place.empty() ? "element " : ", element ") +
                                               std::to_string(result.size() + 1)));
    }
    return result;
}

/// What the text of a form stands for; absent when it is none of that form.
std::optional<PropertyList> scalar(const std::string& form, const std::string& text) {
    if (form == "$date") {
        return dateValue(text);
    }
    if (form == "$data") {
        return base64Value(text);
    }
    const auto number = realValue(text);
    const bool isWrittenSo = form == "$real" && number && !std::isfinite(*number);
    return isWrittenSo ? std::optional<PropertyList>(*number) : std::nullopt;
}

PropertyList resolvedForm(const std::string& form, const PropertyList& content,
                          const std::string& place) {
    if (const auto* entries = content.as<PropertyList::Dictionary>();
        entries != nullptr && form == "$dictionary") {
        return resolvedEntries(*entries, place);
    }
    const auto* text = content.as<std::string>();
    const auto value = text == nullptr ? std::nullopt : scalar(form, *text);
    if (!value) {
        const auto where = place.empty() ? "" : place + ": ";
        throw FormatError(where + "this is no form of " + inQuotes(form) +
                          "; see orvalo-defaults(1).");
    }
    return *value;
}

PropertyList resolved(const PropertyList& value, const std::string& place) {
    if (const auto* list = value.as<PropertyList::List>()) {
        return resolvedElements(*list, place);
    }
    const auto* dictionary = value.as<PropertyList::Dictionary>();
    if (dictionary == nullptr) {
        return value;
    }
    if (dictionary->size() == 1 && dictionary->begin()->first.starts_with('$')) {
        const auto& [form, content] = *dictionary->begin();
        return resolvedForm(form, content, place);
    }
    return resolvedEntries(*dictionary, place);
}

}  // namespace

PropertyList jsonValue(std::string_view text) {
    return resolved(read(text), {});
}

PropertyList::Dictionary jsonDomain(std::string_view text) {
    const auto value = read(text);
    const auto* entries = value.as<PropertyList::Dictionary>();
    if (entries == nullptr) {
        throw FormatError("it holds no object of keys and values.");
    }
    return resolvedEntries(*entries, {});
}

}  // namespace orvalo
