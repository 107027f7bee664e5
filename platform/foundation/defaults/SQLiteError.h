#pragma once

#include <string>

#include "platform/foundation/NSError.h"

namespace orvalo {

/// A failure of SQLite: domain "SQLite", its extended result code and its own words.
class SQLiteError : public NSError {
  public:
    SQLiteError(int code, const std::string& localizedDescription);

    /// Whether the file's content is what is wrong.
    bool isDamage() const;
};

}  // namespace orvalo
