#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// A statement that is prepared once and run often. Texts and data given to it stay alive until
/// its end. Throws SQLiteError.
class SQLiteStatement {
  public:
    explicit SQLiteStatement(sqlite3_stmt* statement) : statement_(statement) {}

    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view text);
    void bind(int index, std::span<const std::uint8_t> data);
    void bindNull(int index);

    /// Whether there is a further row.
    bool step();
    /// Steps to the end and makes it ready for the next run.
    void finish();
    /// Ends the run under way, which holds locks until then.
    void reset() noexcept { sqlite3_reset(statement_.get()); }

    /// The row's columns.
    std::int64_t integer(int column) const;
    std::string_view text(int column) const;
    std::span<const std::uint8_t> data(int column) const;
    bool isNull(int column) const;

  private:
    void check(int result) const;

    std::unique_ptr<sqlite3_stmt, Release<sqlite3_finalize>> statement_;
};

}  // namespace orvalo
