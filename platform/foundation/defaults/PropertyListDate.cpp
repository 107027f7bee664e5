#include "platform/foundation/defaults/PropertyListDate.h"

#include <cmath>

namespace orvalo {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

using std::chrono::sys_seconds;

constexpr auto kReferenceDate = sys_seconds(seconds(978'307'200));
constexpr seconds kFurthest(9'200'000'000'000);
constexpr double kMicrosecondsPerSecond = 1e6;

// The calendar repeats itself after so many years, and std::chrono's ends at the year 32767.
constexpr std::int64_t kCycleYears = 400;
constexpr days kCycle(146'097);

struct SplitDate {
    sys_seconds whole;
    microseconds rest;  ///< From 0 to a second.
};

/// As floor() would split it, which goes out of range at the first of all dates.
SplitDate split(PropertyList::Date date) {
    const auto whole = std::chrono::time_point_cast<seconds>(date);
    const microseconds rest = date - whole;
    return rest < microseconds(0) ? SplitDate{whole - seconds(1), rest + seconds(1)}
                                  : SplitDate{whole, rest};
}

}  // namespace

double secondsOf(PropertyList::Date date) {
    const auto [whole, rest] = split(date);
    return static_cast<double>((whole - kReferenceDate).count()) +
           static_cast<double>(rest.count()) / kMicrosecondsPerSecond;
}

std::optional<PropertyList::Date> dateOf(double seconds) {
    // Written so that what is no number fails, too.
    if (!(std::abs(seconds) <= static_cast<double>(kFurthest.count()))) {
        return std::nullopt;
    }
    const double whole = std::floor(seconds);
    return kReferenceDate + std::chrono::seconds(static_cast<std::int64_t>(whole)) +
           microseconds(std::llround((seconds - whole) * kMicrosecondsPerSecond));
}

DateFields fieldsOf(PropertyList::Date date) {
    const auto [whole, rest] = split(date);
    const auto day = std::chrono::floor<days>(whole);
    const auto cycles = day.time_since_epoch() / kCycle;
    const std::chrono::year_month_day calendar(day - cycles * kCycle);
    const std::chrono::hh_mm_ss time(whole - day);
    return {.year = static_cast<int>(calendar.year()) + cycles * kCycleYears,
            .month = static_cast<unsigned>(calendar.month()),
            .day = static_cast<unsigned>(calendar.day()),
            .hour = static_cast<int>(time.hours().count()),
            .minute = static_cast<int>(time.minutes().count()),
            .second = static_cast<int>(time.seconds().count()),
            .microsecond = static_cast<int>(rest.count())};
}

std::optional<PropertyList::Date> dateOf(const DateFields& fields) {
    const auto cycles = fields.year / kCycleYears;
    const std::chrono::year_month_day calendar(
        std::chrono::year(static_cast<int>(fields.year % kCycleYears)),
        std::chrono::month(fields.month), std::chrono::day(fields.day));
    const seconds time = hours(fields.hour) + minutes(fields.minute) + seconds(fields.second);
    constexpr std::int64_t mostCycles = kFurthest / kCycle + 1;
    if (!calendar.ok() || std::abs(cycles) > mostCycles || fields.hour < 0 || fields.hour > 23 ||
        fields.minute < 0 || fields.minute > 59 || fields.second < 0 || fields.second > 59 ||
        fields.microsecond < 0 || fields.microsecond > 999'999) {
        return std::nullopt;
    }
    const auto whole = std::chrono::sys_days(calendar) + cycles * kCycle + time;
    const auto since = whole - kReferenceDate;
    if (since < -kFurthest || since >= kFurthest) {
        return std::nullopt;
    }
    return whole + microseconds(fields.microsecond);
}

}  // namespace orvalo
