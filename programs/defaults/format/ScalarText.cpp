#include "programs/defaults/format/ScalarText.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

/// A number that fills the whole text behind a plus sign that it may have.
template <typename Number>
std::optional<Number> number(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    Number value{};
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    return isNumber ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string base64Text(const Data& data) {
    return GText(g_base64_encode(data.data(), data.size())).get();
}

std::optional<Data> base64Value(std::string_view text) {
    std::string letters(text);
    std::erase_if(letters, [](char character) { return g_ascii_isspace(character); });
    gsize size = 0;
    const std::unique_ptr<guchar, Release<g_free>> bytes(g_base64_decode(letters.c_str(), &size));
    Data data(bytes.get(), bytes.get() + size);
    // GLib passes over what is no Base64; whatever it passed over is missing now.
    return base64Text(data) == letters ? std::optional(std::move(data)) : std::nullopt;
}

std::optional<std::int64_t> integerValue(std::string_view text) {
    return number<std::int64_t>(text);
}

std::optional<double> realValue(std::string_view text) {
    return text.find('(') == std::string_view::npos ? number<double>(text) : std::nullopt;
}

std::string realText(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    std::array<char, 32> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return {digits.data(), end};
}

}  // namespace orvalo
