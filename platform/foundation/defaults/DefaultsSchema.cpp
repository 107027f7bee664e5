#include "platform/foundation/defaults/DefaultsSchema.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/ChangeCounter.h"
#include "platform/foundation/defaults/SQLiteTransaction.h"

namespace orvalo {

namespace {

// "OrvD", in the place where a database says whose it is.
constexpr std::int64_t kApplication = 0x4F727644;

// What leads from each version to the next; an empty database is version 0.
constexpr std::array kSteps = {
    // A change's number is its row's. Without a value, the entry has been removed.
    "CREATE TABLE entries (change INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, value BLOB);",
    // Removed entries up to this change are no longer there.
    "CREATE TABLE state (purged INTEGER NOT NULL); INSERT INTO state VALUES (0);",
};
constexpr auto kVersion = static_cast<std::int64_t>(kSteps.size());

// How the entries of each version from 1 on are read.
constexpr std::array kSelects = {
    "SELECT change, key, value, 0 FROM entries WHERE change > ?1 ORDER BY change",
    "SELECT change, key, value, (SELECT purged FROM state) FROM entries WHERE change > ?1 "
    "ORDER BY change",
};
static_assert(kSelects.size() == kSteps.size());

std::int64_t version(SQLiteDatabase& database) {
    return database.integer("PRAGMA user_version");
}

void checkOrigin(SQLiteDatabase& database, const std::string& path) {
    const auto application = database.integer("PRAGMA application_id");
    const bool isEmpty =
        application == 0 && database.integer("SELECT count(*) FROM sqlite_schema") == 0;
    if (application != kApplication && !isEmpty) {
        throw NSError::posix(EEXIST, path + " is another program's database");
    }
    refuseNewerVersion(version(database), path);
}

}  // namespace

void refuseNewerVersion(std::int64_t version, const std::string& path) {
    if (version < 0 || version > kVersion) {
        throw NSError::posix(ENOTSUP, path + " is of version " + std::to_string(version) +
                                          ", newer than this program's " +
                                          std::to_string(kVersion));
    }
}

void bringToThisVersion(SQLiteDatabase& database, const std::string& path, ChangeMapping* counter) {
    checkOrigin(database, path);
    if (database.isReadOnly() || counter == nullptr) {
        return;
    }
    database.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    if (isOfThisVersion(database)) {
        return;
    }
    // Who dies before its end leaves the mark, and others look.
    const ChangeCounter::Write told(*counter);
    SQLiteTransaction transaction(database);
    for (auto step = version(database); step < kVersion; ++step) {
        database.run(kSteps.at(static_cast<std::size_t>(step)));
    }
    database.run(("PRAGMA application_id = " + std::to_string(kApplication) +
                  "; PRAGMA user_version = " + std::to_string(kVersion))
                     .c_str());
    transaction.commit();
}

bool isEmpty(SQLiteDatabase& database) {
    return version(database) == 0;
}

bool isOfThisVersion(SQLiteDatabase& database) {
    return version(database) == kVersion;
}

SQLiteStatement selectEntries(SQLiteDatabase& database, const std::string& path) {
    if (isEmpty(database)) {
        throw NSError::posix(EROFS, path + " is empty");
    }
    return database.prepare(kSelects.at(static_cast<std::size_t>(version(database) - 1)));
}

}  // namespace orvalo
