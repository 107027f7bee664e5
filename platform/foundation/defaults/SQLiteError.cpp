#include "platform/foundation/defaults/SQLiteError.h"

#include <sqlite3.h>

namespace orvalo {

namespace {

constexpr int kPrimaryCode = 0xFF;

}  // namespace

SQLiteError::SQLiteError(int code, const std::string& localizedDescription)
    : NSError("SQLite", code, localizedDescription) {}

bool SQLiteError::isDamage() const {
    const auto primary = static_cast<int>(code()) & kPrimaryCode;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

}  // namespace orvalo
