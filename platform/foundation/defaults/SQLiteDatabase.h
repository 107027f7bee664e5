#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/defaults/SQLiteStatement.h"

namespace orvalo {

/// One connection to a database. One thread at a time.
///
/// Whoever opens a file otherwise and closes it again, in the same process, takes the locks of
/// every connection to it away; so nobody may.
class SQLiteDatabase {
  public:
    enum class Access {
        shared,    ///< With all who have it open; for reading alone where it cannot be written.
        alone,     ///< For reading; the file has no log beside it, and nobody writes to it.
        ownIndex,  ///< For reading, with the log's index in memory; nobody writes to either file.
    };

    /// Opens an existing file. Throws SQLiteError, as every operation does.
    explicit SQLiteDatabase(const std::string& path, Access access = Access::shared);

    bool isReadOnly() const;
    void run(const char* statements);
    /// The integer that a query yields in its first row; 0 without a row.
    std::int64_t integer(const char* query);
    SQLiteStatement prepare(const char* statement);
    /// The number of the row that was inserted last.
    std::int64_t lastRow() const;

    /// How many pages the log holds, as of this connection's last write.
    int logPages() const { return *logPages_; }
    /// Moves the log's pages into the database, as far as no reader is in the way.
    void checkpoint();
    /// Waits for the readers, for as long as the next wait may last, and begins the log anew.
    void shortenLog();
    /// How long statements wait for another's lock, in ms.
    void setPatience(int milliseconds);

  private:
    std::unique_ptr<int> logPages_;
    std::unique_ptr<sqlite3, Release<sqlite3_close_v2>> connection_;
};

}  // namespace orvalo
