#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/defaults/ChangeMapping.h"
#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// Sees to it that a database holds settings in the form of this version: makes it of an empty one,
/// and brings an older one forward, either wholly or not at all, under the counter's mark, since
/// others that have it open are to look again. Throws NSError, and leaves the database as it is,
/// when it holds something else, is of a newer version, or of an older one without a counter to
/// mark; SQLiteError when it is damaged. The caller holds the domain's lock.
void bringToThisVersion(SQLiteDatabase& database, const std::string& path, ChangeMapping* counter);

/// Throws NSError when that version is newer than this program's.
void refuseNewerVersion(std::int64_t version, const std::string& path);

}  // namespace orvalo
