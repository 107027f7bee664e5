#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/defaults/ChangeMapping.h"
#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// Makes a database of settings of an empty one, and brings one of an older version forward, either
/// wholly or not at all, under the counter's mark, since others that have it open are to look
/// again. Leaves it as it is where it cannot be written or there is no counter. Throws NSError, and
/// leaves it as well, when it holds something else or is of a newer version; SQLiteError when it
/// cannot be written after all, or is damaged. The caller holds the domain's lock.
void bringToThisVersion(SQLiteDatabase& database, const std::string& path, ChangeMapping* counter);

bool isEmpty(SQLiteDatabase& database);
bool isOfThisVersion(SQLiteDatabase& database);

/// The statement that reads the entries of this version or of an older one, in the order of their
/// changes: change, key, value and the last change that was purged, of those after the change that
/// is bound to it. Throws NSError when the database is empty.
SQLiteStatement selectEntries(SQLiteDatabase& database, const std::string& path);

/// Throws NSError when that version is newer than this program's.
void refuseNewerVersion(std::int64_t version, const std::string& path);

}  // namespace orvalo
