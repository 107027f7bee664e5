#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// Sees to it that a database holds settings in the form of this version: makes it of an empty one,
/// and brings an older one forward, either wholly or not at all. Returns whether it was to do so.
/// Throws NSError, and leaves the database as it is, when it holds something else or is of a newer
/// version; SQLiteError when it is damaged. The caller holds the domain's lock.
bool bringToThisVersion(SQLiteDatabase& database, const std::string& path);

/// Throws NSError when that version is newer than this program's.
void refuseNewerVersion(std::int64_t version, const std::string& path);

}  // namespace orvalo
