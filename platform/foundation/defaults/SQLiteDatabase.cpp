#include "platform/foundation/defaults/SQLiteDatabase.h"

#include <glib.h>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/URL.h"
#include "platform/foundation/defaults/SQLiteError.h"

namespace orvalo {

namespace {

// Locks are held for some ten microseconds, and by a stopped process or a person at a terminal for
// as long as they please.
constexpr int kPatience = 10'000;

[[noreturn]] void fail(sqlite3* connection, int result) {
    if (connection == nullptr) {
        throw SQLiteError(result, sqlite3_errstr(result));
    }
    throw SQLiteError(sqlite3_extended_errcode(connection), sqlite3_errmsg(connection));
}

const char* parameters(SQLiteDatabase::Access access) {
    switch (access) {
        case SQLiteDatabase::Access::alone:
            return "?immutable=1";
        case SQLiteDatabase::Access::ownIndex:
            // The lock that would keep others out needs a file that can be written.
            return "?mode=ro&vfs=unix-none";
        default:
            return "";
    }
}

}  // namespace

SQLiteDatabase::SQLiteDatabase(const std::string& path, Access access)
    : logPages_(std::make_unique<int>(0)) {
    const auto name = URL::fileURLWithPath(path).absoluteString() + parameters(access);
    sqlite3* connection = nullptr;
    const int result = sqlite3_open_v2(
        name.c_str(), &connection,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE,
        nullptr);
    connection_.reset(connection);
    if (result != SQLITE_OK) {
        fail(connection, result);
    }
    setPatience(kPatience);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // Closing then neither takes time nor removes the log by its name, which may have become that
    // of another file's.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_wal_hook(
        connection,
        [](void* pages, sqlite3* /*connection*/, const char* /*name*/, int count) {
            *static_cast<int*>(pages) = count;
            return SQLITE_OK;
        },
        logPages_.get());
    if (access == Access::ownIndex) {
        // Before the first look, it has SQLite keep the index in memory.
        run("PRAGMA locking_mode = EXCLUSIVE");
    }
}

bool SQLiteDatabase::isReadOnly() const {
    return sqlite3_db_readonly(connection_.get(), "main") == 1;
}

void SQLiteDatabase::run(const char* statements) {
    const int result = sqlite3_exec(connection_.get(), statements, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) {
        fail(connection_.get(), result);
    }
}

std::int64_t SQLiteDatabase::integer(const char* query) {
    auto statement = prepare(query);
    return statement.step() ? statement.integer(0) : 0;
}

SQLiteStatement SQLiteDatabase::prepare(const char* statement) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(connection_.get(), statement, -1,
                                          SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    if (result != SQLITE_OK) {
        fail(connection_.get(), result);
    }
    return SQLiteStatement(prepared);
}

std::int64_t SQLiteDatabase::lastRow() const {
    return sqlite3_last_insert_rowid(connection_.get());
}

void SQLiteDatabase::checkpoint() {
    sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr,
                              nullptr);
}

void SQLiteDatabase::shortenLog() {
    sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                              nullptr);
}

void SQLiteDatabase::setPatience(int milliseconds) {
    sqlite3_busy_timeout(connection_.get(), milliseconds);
}

}  // namespace orvalo
