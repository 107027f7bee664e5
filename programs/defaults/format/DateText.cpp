#include <algorithm>
#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdio>

#include "platform/foundation/defaults/PropertyListDate.h"
#include "programs/defaults/format/ScalarText.h"

// Dates of ScalarText.h.

namespace orvalo {

namespace {

// Behind the year.
constexpr std::string_view kForm = "-00-00T00:00:00";
constexpr std::size_t kYearDigits = 4;
constexpr std::size_t kMostYearDigits = 6;
constexpr std::int64_t kMostPlainYear = 9999;
constexpr std::size_t kMostDecimals = 6;
constexpr std::string_view kDigits = "0123456789";

/// How many characters the year at the text's beginning has: four digits, or up to two more behind
/// a sign. 0 when there is none.
std::size_t yearSize(std::string_view text) {
    const std::size_t sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    const auto digits = std::min(text.find_first_not_of(kDigits, sign), text.size()) - sign;
    const auto most = sign == 0 ? kYearDigits : kMostYearDigits;
    return digits < kYearDigits || digits > most ? 0 : sign + digits;
}

/// Whether the text begins with digits where the form has them, and else the form's characters.
bool hasForm(std::string_view text) {
    if (text.size() < kForm.size()) {
        return false;
    }
    for (std::size_t index = 0; index < kForm.size(); ++index) {
        const bool isDigit = kDigits.find(text[index]) != std::string_view::npos;
        if (kForm[index] == '0' ? !isDigit : text[index] != kForm[index]) {
            return false;
        }
    }
    return true;
}

int number(std::string_view digits) {
    int result = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), result);
    return result;
}

/// The microseconds of ".25" and the like, "" being none; absent when the text is another.
std::optional<int> fraction(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto decimals = text.substr(1);
    if (text.front() != '.' || decimals.empty() || decimals.size() > kMostDecimals ||
        decimals.find_first_not_of(kDigits) != std::string_view::npos) {
        return std::nullopt;
    }
    std::string filled(decimals);
    filled.resize(kMostDecimals, '0');
    return number(filled);
}

}  // namespace

std::string dateText(PropertyList::Date date) {
    const auto fields = fieldsOf(date);
    const bool isPlain = fields.year >= 0 && fields.year <= kMostPlainYear;
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(),
                  isPlain ? "%04" PRId64 "-%02u-%02uT%02d:%02d:%02d.%06d"
                          : "%+05" PRId64 "-%02u-%02uT%02d:%02d:%02d.%06d",
                  fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second,
                  fields.microsecond);
    std::string text = buffer.data();
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    // A time that ends in zeros has lost none of them: a full stop stands behind it.
    return text + "Z";
}

std::optional<PropertyList::Date> dateValue(std::string_view text) {
    const auto year = yearSize(text);
    const auto rest = text.substr(year);
    if (year == 0 || !hasForm(rest) || !rest.ends_with('Z')) {
        return std::nullopt;
    }
    const auto decimals = fraction(rest.substr(kForm.size(), rest.size() - kForm.size() - 1));
    if (!decimals) {
        return std::nullopt;
    }
    const auto field = [rest](std::size_t at) { return number(rest.substr(at, 2)); };
    // Which takes a minus, and no plus.
    const auto begin = text.starts_with('+') ? 1U : 0U;
    return dateOf({.year = number(text.substr(begin, year - begin)),
                   .month = static_cast<unsigned>(field(1)),
                   .day = static_cast<unsigned>(field(4)),
                   .hour = field(7),
                   .minute = field(10),
                   .second = field(13),
                   .microsecond = *decimals});
}

}  // namespace orvalo
