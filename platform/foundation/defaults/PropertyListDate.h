#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

// Dates as property lists have them: seconds of double precision since 2001-01-01 00:00 UTC.

/// The seconds that stand for a date.
double secondsOf(PropertyList::Date date);
/// The date of such seconds, to the nearest microsecond. Absent when it lies more than 9.2e12
/// seconds (291,536 years) off, which is about what 64 bits of microseconds hold, or is no number.
std::optional<PropertyList::Date> dateOf(double seconds);

/// A date by the Gregorian calendar, which goes on before its introduction and counts a year 0, in
/// UTC.
struct DateFields {
    std::int64_t year;
    unsigned month;
    unsigned day;
    int hour;
    int minute;
    int second;
    int microsecond;
};

DateFields fieldsOf(PropertyList::Date date);
/// Absent when the calendar or the clock has no such date, or when it lies further off than
/// dateOf(double) goes.
std::optional<PropertyList::Date> dateOf(const DateFields& fields);

}  // namespace orvalo
