#include "platform/foundation/defaults/SQLiteStatement.h"

#include <utility>

#include "platform/foundation/defaults/SQLiteError.h"

namespace orvalo {

void SQLiteStatement::check(int result) const {
    if (result != SQLITE_OK) {
        auto* connection = sqlite3_db_handle(statement_.get());
        throw SQLiteError(sqlite3_extended_errcode(connection), sqlite3_errmsg(connection));
    }
}

void SQLiteStatement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(statement_.get(), index, value));
}

void SQLiteStatement::bind(int index, std::string_view text) {
    // An empty view may have no address, which SQLite would take for no value.
    check(sqlite3_bind_text64(statement_.get(), index, text.empty() ? "" : text.data(), text.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
}

void SQLiteStatement::bind(int index, std::span<const std::uint8_t> data) {
    check(sqlite3_bind_blob64(statement_.get(), index, data.data(), data.size(), SQLITE_STATIC));
}

void SQLiteStatement::bindNull(int index) {
    check(sqlite3_bind_null(statement_.get(), index));
}

bool SQLiteStatement::step() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        auto* connection = sqlite3_db_handle(statement_.get());
        // The message goes with the statement's state.
        SQLiteError error(sqlite3_extended_errcode(connection), sqlite3_errmsg(connection));
        reset();
        throw SQLiteError(std::move(error));
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

bool SQLiteStatement::isNull(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

}  // namespace orvalo
