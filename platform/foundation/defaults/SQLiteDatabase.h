#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// A failure of SQLite: domain "SQLite", its extended result code and the reason.
class SQLiteError : public NSError {
  public:
    SQLiteError(int code, const std::string& localizedDescription);
    /// The last failure of a connection, with the system's reason where SQLite's text lacks it.
    static SQLiteError last(sqlite3* connection);

    /// Whether the content of the file is damaged.
    bool isDamage() const;
    /// Whether the file could not be opened, as when it is missing.
    bool isMissing() const;
    /// Whether another process holds the lock.
    bool isBusy() const;
};

/// A prepared statement. Text and data bound to it must live until reset(). Throws SQLiteError.
class SQLiteStatement {
  public:
    explicit SQLiteStatement(sqlite3_stmt* statement) : statement_(statement) {}

    void bind(int index, std::string_view text);
    void bind(int index, std::span<const std::uint8_t> data);

    /// Whether there is a further row.
    bool step();
    /// Runs the statement to its end and resets it.
    void finish();
    /// Ends the current run, which holds locks until then.
    void reset() noexcept { sqlite3_reset(statement_.get()); }

    std::int64_t integer(int column) const;
    std::string_view text(int column) const;
    std::span<const std::uint8_t> data(int column) const;

  private:
    std::unique_ptr<sqlite3_stmt, Release<sqlite3_finalize>> statement_;
};

/// A connection to a database. One thread at a time. Throws SQLiteError.
///
/// No other code may open and close the same file in this process: that would drop the connection's
/// POSIX locks.
class SQLiteDatabase {
  public:
    /// Opens an existing file, for reading only where it cannot be written.
    explicit SQLiteDatabase(const std::string& path);

    bool isReadOnly() const;
    /// Runs statements, separated by semicolons.
    void run(const std::string& statements);
    /// The integer in the first row of a query; 0 without a row.
    std::int64_t integer(const std::string& query);
    SQLiteStatement prepare(const std::string& statement);

  private:
    std::unique_ptr<sqlite3, Release<sqlite3_close_v2>> connection_;
};

}  // namespace orvalo
