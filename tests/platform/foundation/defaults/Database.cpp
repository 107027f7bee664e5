#include "tests/platform/foundation/defaults/Database.h"

#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>

namespace orvalo::testing {

std::vector<std::string> query(const std::filesystem::path& file, const std::string& statements) {
    sqlite3* connection = nullptr;
    std::vector<std::string> rows;
    sqlite3_open(file.c_str(), &connection);
    const int result = sqlite3_exec(
        connection, statements.c_str(),
        [](void* target, int /*count*/, char** columns, char** /*names*/) {
            static_cast<std::vector<std::string>*>(target)->emplace_back(
                columns[0] == nullptr ? "NULL" : columns[0]);
            return 0;
        },
        &rows, nullptr);
    const std::string words = sqlite3_errmsg(connection);
    sqlite3_close(connection);
    if (result != SQLITE_OK) {
        throw std::runtime_error(words);
    }
    return rows;
}

void emptyLog(const std::filesystem::path& file) {
    query(file, "PRAGMA wal_checkpoint(TRUNCATE)");
}

std::vector<std::filesystem::path> setAside(const std::filesystem::path& file) {
    const auto beginning = file.filename().string() + ".damaged-";
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path())) {
        const auto name = entry.path().filename().string();
        if (name.starts_with(beginning) && !name.ends_with("-wal") && !name.ends_with("-shm")) {
            found.push_back(entry.path());
        }
    }
    std::ranges::sort(found);
    return found;
}

}  // namespace orvalo::testing
