#include "platform/foundation/defaults/SQLiteTransaction.h"

#include "platform/foundation/defaults/SQLiteError.h"

namespace orvalo {

SQLiteTransaction::SQLiteTransaction(SQLiteDatabase& database) : database_(database) {
    database_.run("BEGIN IMMEDIATE");
}

SQLiteTransaction::~SQLiteTransaction() {
    if (!isOpen_) {
        return;
    }
    try {
        database_.run("ROLLBACK");
    } catch (const SQLiteError&) {
        // After some failures SQLite has done so itself.
    }
}

void SQLiteTransaction::commit() {
    database_.run("COMMIT");
    isOpen_ = false;
}

}  // namespace orvalo
