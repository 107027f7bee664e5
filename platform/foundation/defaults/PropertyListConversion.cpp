#include "platform/foundation/defaults/PropertyListConversion.h"

#include <glib.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace orvalo {

namespace {

constexpr const char* kBlanks = " \t\n\r\v\f";

std::string_view withoutBlanks(std::string_view text) {
    const auto begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

/// The number that a text begins with, in decimal digits.
template <typename Number>
Number leading(std::string_view text) {
    text = withoutBlanks(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || (text.front() != '.' && g_ascii_isdigit(text.front()) == 0)) {
        return 0;
    }
    const auto signedText = (isNegative ? "-" : "") + std::string(text);
    Number number{};
    const auto result =
        std::from_chars(signedText.data(), signedText.data() + signedText.size(), number);
    if (result.ec != std::errc::result_out_of_range) {
        return number;
    }
    if constexpr (std::numeric_limits<Number>::has_infinity) {
        // It may be too small as well as too large.
        return g_ascii_strtod(signedText.c_str(), nullptr);
    }
    return isNegative ? std::numeric_limits<Number>::min() : std::numeric_limits<Number>::max();
}

std::int64_t truncated(double number) {
    constexpr double bound = 0x1p63;
    if (std::isnan(number)) {
        return 0;
    }
    if (number >= bound) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return number < -bound ? std::numeric_limits<std::int64_t>::min()
                           : static_cast<std::int64_t>(number);
}

std::string expanded(const std::string& path) {
    const bool isInHome = path == "~" || path.starts_with("~/");
    return isInHome ? g_get_home_dir() + path.substr(1) : path;
}

}  // namespace

std::optional<std::string> textOf(const PropertyList& value) {
    const auto* text = value.as<std::string>();
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::int64_t integerOf(const PropertyList& value) {
    if (const auto* integer = value.as<std::int64_t>()) {
        return *integer;
    }
    if (const auto* number = value.as<double>()) {
        return truncated(*number);
    }
    if (const auto* truth = value.as<bool>()) {
        return *truth ? 1 : 0;
    }
    const auto* text = value.as<std::string>();
    return text != nullptr ? leading<std::int64_t>(*text) : 0;
}

double doubleOf(const PropertyList& value) {
    if (const auto* number = value.as<double>()) {
        return *number;
    }
    if (const auto* text = value.as<std::string>()) {
        return leading<double>(*text);
    }
    return static_cast<double>(integerOf(value));
}

float floatOf(const PropertyList& value) {
    if (const auto* integer = value.as<std::int64_t>()) {
        return static_cast<float>(*integer);
    }
    // IEEE 754 has what is out of a float's range become infinite.
    return static_cast<float>(doubleOf(value));
}

bool truthOf(const PropertyList& value) {
    if (const auto* truth = value.as<bool>()) {
        return *truth;
    }
    if (const auto* number = value.as<double>()) {
        return *number != 0;
    }
    const auto* text = value.as<std::string>();
    if (text == nullptr) {
        return integerOf(value) != 0;
    }
    auto rest = withoutBlanks(*text);
    if (rest.starts_with('+') || rest.starts_with('-')) {
        rest.remove_prefix(1);
    }
    const auto first = rest.find_first_not_of('0');
    return first != std::string_view::npos &&
           std::string_view("YyTt123456789").find(rest[first]) != std::string_view::npos;
}

std::optional<URL> addressOf(const PropertyList& value) {
    const auto* text = value.as<std::string>();
    if (text == nullptr || text->empty()) {
        return std::nullopt;
    }
    if (auto address = URL::string(*text)) {
        return address;
    }
    return URL::fileURLWithPath(expanded(*text));
}

}  // namespace orvalo
