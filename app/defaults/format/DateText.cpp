#include <array>
#include <charconv>
#include <cstdio>

#include "app/defaults/format/ScalarText.h"

// Dates of ScalarText.h.

namespace orvalo {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr std::string_view kForm = "0000-00-00T00:00:00";
constexpr std::size_t kMostDecimals = 6;

/// Whether the text has a digit where the form has one, and else the form's characters.
bool hasForm(std::string_view text) {
    for (std::size_t index = 0; index < kForm.size(); ++index) {
        const bool isDigit = text[index] >= '0' && text[index] <= '9';
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
std::optional<microseconds> fraction(std::string_view text) {
    if (text.empty()) {
        return microseconds(0);
    }
    const auto decimals = text.substr(1);
    if (text.front() != '.' || decimals.empty() || decimals.size() > kMostDecimals ||
        decimals.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    std::string filled(decimals);
    filled.resize(kMostDecimals, '0');
    return microseconds(number(filled));
}

}  // namespace

std::string dateText(PropertyList::Date date) {
    const auto day = std::chrono::floor<days>(date);
    const std::chrono::year_month_day calendar(day);
    const std::chrono::hh_mm_ss time(date - day);
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06d",
                  static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
                  static_cast<unsigned>(calendar.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()),
                  static_cast<int>(time.subseconds().count()));
    std::string text = buffer.data();
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    // A time that ends in zeros has lost none of them: a full stop stands behind it.
    return text + "Z";
}

std::optional<PropertyList::Date> dateValue(std::string_view text) {
    if (text.size() <= kForm.size() || !text.ends_with('Z') || !hasForm(text)) {
        return std::nullopt;
    }
    const auto decimals = fraction(text.substr(kForm.size(), text.size() - kForm.size() - 1));
    const auto field = [text](std::size_t at) { return number(text.substr(at, 2)); };
    const std::chrono::year_month_day calendar(std::chrono::year(number(text.substr(0, 4))),
                                               std::chrono::month(static_cast<unsigned>(field(5))),
                                               std::chrono::day(static_cast<unsigned>(field(8))));
    const auto hour = field(11);
    const auto minute = field(14);
    const auto second = field(17);
    if (!decimals || !calendar.ok() || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return std::chrono::sys_days(calendar) + hours(hour) + minutes(minute) + seconds(second) +
           *decimals;
}

}  // namespace orvalo
