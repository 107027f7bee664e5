#include "platform/foundation/defaults/PropertyListConversion.h"

#include <glib.h>

#include <cmath>
#include <limits>

namespace orvalo {

namespace {

/// The text without its leading blanks.
std::string_view trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(" \t\n\r\v\f");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

/// The decimal number at the beginning of a text; 0 without one.
double leadingNumber(std::string_view text) {
    text = trimmed(text);
    // g_ascii_strtod() would also take "0x10", "nan" and "infinity".
    return g_ascii_strtod(
        std::string(text.substr(0, text.find_first_not_of("0123456789+-.eE"))).c_str(), nullptr);
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
    return text != nullptr ? g_ascii_strtoll(text->c_str(), nullptr, 10) : 0;
}

float floatOf(const PropertyList& value) {
    // A number out of a float's range becomes infinite.
    if (const auto* number = value.as<double>()) {
        return static_cast<float>(*number);
    }
    if (const auto* text = value.as<std::string>()) {
        return static_cast<float>(leadingNumber(*text));
    }
    return static_cast<float>(integerOf(value));
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
    auto rest = trimmed(*text);
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
