#pragma once

#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// Statements that take effect together, or not at all when the object goes without commit().
/// Throws SQLiteError.
class SQLiteTransaction {
  public:
    explicit SQLiteTransaction(SQLiteDatabase& database);
    ~SQLiteTransaction();
    SQLiteTransaction(const SQLiteTransaction&) = delete;
    SQLiteTransaction& operator=(const SQLiteTransaction&) = delete;

    void commit();

  private:
    SQLiteDatabase& database_;
    bool isOpen_ = true;
};

}  // namespace orvalo
