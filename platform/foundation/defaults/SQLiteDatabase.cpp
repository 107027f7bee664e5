#include "platform/foundation/defaults/SQLiteDatabase.h"

#include <glib.h>

#include <cerrno>

namespace orvalo {

namespace {

constexpr int kPrimaryCode = 0xFF;
constexpr int kBusyTimeout = 5'000;  // ms

std::string reasonOf(sqlite3* connection, int code) {
    // sqlite3_system_errno() stays 0 when a statement fails in the middle.
    const int systemError = errno;
    switch (code & kPrimaryCode) {
        case SQLITE_BUSY:
            return "another process has kept it locked for 5 s";
        case SQLITE_FULL:
            return g_strerror(ENOSPC);
        case SQLITE_READONLY:
            return "it is read-only";
        case SQLITE_IOERR:
        case SQLITE_CANTOPEN:
            return systemError != 0 ? g_strerror(systemError) : sqlite3_errmsg(connection);
        default:
            return sqlite3_errmsg(connection);
    }
}

}  // namespace

SQLiteError::SQLiteError(int code, const std::string& localizedDescription)
    : NSError("SQLite", code, localizedDescription) {}

SQLiteError SQLiteError::last(sqlite3* connection) {
    const int code = sqlite3_extended_errcode(connection);
    return {code, reasonOf(connection, code)};
}

bool SQLiteError::isDamage() const {
    const auto primary = code() & kPrimaryCode;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

bool SQLiteError::isMissing() const {
    return (code() & kPrimaryCode) == SQLITE_CANTOPEN;
}

bool SQLiteError::isBusy() const {
    return (code() & kPrimaryCode) == SQLITE_BUSY;
}

void SQLiteStatement::bind(int index, std::string_view text) {
    // SQLite would store NULL for a null address.
    sqlite3_bind_text64(statement_.get(), index, text.empty() ? "" : text.data(), text.size(),
                        SQLITE_STATIC, SQLITE_UTF8);
}

void SQLiteStatement::bind(int index, std::span<const std::uint8_t> data) {
    sqlite3_bind_blob64(statement_.get(), index, data.data(), data.size(), SQLITE_STATIC);
}

bool SQLiteStatement::step() {
    errno = 0;
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        const auto error = SQLiteError::last(sqlite3_db_handle(statement_.get()));
        reset();
        throw SQLiteError(error);
    }
    return result == SQLITE_ROW;
}

void SQLiteStatement::finish() {
    while (step()) {
    }
    reset();
}

std::int64_t SQLiteStatement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string_view SQLiteStatement::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    return text == nullptr ? std::string_view()
                           : std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(
                                                        statement_.get(), column)));
}

std::span<const std::uint8_t> SQLiteStatement::data(int column) const {
    const auto* data =
        static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_.get(), column));
    return {data, data == nullptr
                      ? 0
                      : static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

SQLiteDatabase::SQLiteDatabase(const std::string& path) {
    sqlite3* connection = nullptr;
    errno = 0;
    const int result = sqlite3_open_v2(
        path.c_str(), &connection,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    connection_.reset(connection);
    if (result != SQLITE_OK) {
        throw SQLiteError::last(connection);
    }
    sqlite3_busy_timeout(connection, kBusyTimeout);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    // SQLite removes the log by its name when it closes a database. After a damaged file was set
    // aside, the name belongs to the log of its successor.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

bool SQLiteDatabase::isReadOnly() const {
    return sqlite3_db_readonly(connection_.get(), "main") == 1;
}

void SQLiteDatabase::run(const std::string& statements) {
    errno = 0;
    if (sqlite3_exec(connection_.get(), statements.c_str(), nullptr, nullptr, nullptr) !=
        SQLITE_OK) {
        throw SQLiteError::last(connection_.get());
    }
}

std::int64_t SQLiteDatabase::integer(const std::string& query) {
    auto statement = prepare(query);
    return statement.step() ? statement.integer(0) : 0;
}

SQLiteStatement SQLiteDatabase::prepare(const std::string& statement) {
    sqlite3_stmt* prepared = nullptr;
    errno = 0;
    if (sqlite3_prepare_v3(connection_.get(), statement.c_str(), -1, SQLITE_PREPARE_PERSISTENT,
                           &prepared, nullptr) != SQLITE_OK) {
        throw SQLiteError::last(connection_.get());
    }
    return SQLiteStatement(prepared);
}

}  // namespace orvalo
