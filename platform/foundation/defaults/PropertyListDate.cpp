#include "platform/foundation/defaults/PropertyListDate.h"

namespace orvalo {

using std::chrono::microseconds;
using std::chrono::seconds;

GDateTimePointer dateTimeOf(PropertyList::Date date) {
    // Not floor(), which overflows at the first of all dates.
    auto whole = std::chrono::duration_cast<seconds>(date.time_since_epoch());
    auto rest = date.time_since_epoch() - microseconds(whole);
    if (rest < microseconds(0)) {
        whole -= seconds(1);
        rest += seconds(1);
    }
    const GDateTimePointer second(g_date_time_new_from_unix_utc(whole.count()));
    return GDateTimePointer(second ? g_date_time_add(second.get(), rest.count()) : nullptr);
}

PropertyList::Date dateOf(GDateTime* dateTime) {
    return PropertyList::Date(seconds(g_date_time_to_unix(dateTime)) +
                              microseconds(g_date_time_get_microsecond(dateTime)));
}

}  // namespace orvalo
