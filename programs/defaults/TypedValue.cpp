#include "programs/defaults/TypedValue.h"

#include <optional>

#include "programs/defaults/DefaultsOptions.h"
#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"
#include "programs/defaults/format/JSONForm.h"
#include "programs/defaults/format/ScalarText.h"

namespace orvalo {

namespace {

std::optional<bool> truthValue(const std::string& text) {
    if (text == "true" || text == "yes") {
        return true;
    }
    return text == "false" || text == "no" ? std::optional(false) : std::nullopt;
}

/// What the option wants, as long as it is no JSON.
struct Wish {
    std::optional<PropertyList> value;
    const char* form;
};

Wish wish(const std::string& type, const std::string& text) {
    if (type == "int") {
        return {integerValue(text), "a whole number of 64 bits"};
    }
    if (type == "float") {
        return {realValue(text), "a number"};
    }
    if (type == "bool") {
        return {truthValue(text), "true or false"};
    }
    if (type == "date") {
        return {dateValue(text), "a date such as 2026-11-21T08:30:00Z"};
    }
    if (type == "data") {
        return {base64Value(text), "Base64"};
    }
    return {text, ""};
}

}  // namespace

PropertyList typedValue(const std::string& type, const std::string& text) {
    if (type == "json") {
        try {
            return jsonValue(text);
        } catch (const FormatError& error) {
            throw BadOption("--json: " + std::string(error.what()));
        }
    }
    auto [value, form] = wish(type, text);
    if (!value) {
        throw BadOption("--" + type + " wants " + form + ", not " + inQuotes(text) + ".");
    }
    return *std::move(value);
}

}  // namespace orvalo
