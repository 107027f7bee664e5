#pragma once

#include <glib.h>

#include <memory>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

using GDateTimePointer = std::unique_ptr<GDateTime, Release<g_date_time_unref>>;

/// The date as a GDateTime in UTC; null outside the years 1 to 9999.
GDateTimePointer dateTimeOf(PropertyList::Date date);
PropertyList::Date dateOf(GDateTime* dateTime);

}  // namespace orvalo
