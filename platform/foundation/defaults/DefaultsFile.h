#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Data.h"
#include "platform/foundation/defaults/PropertyList.h"
#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// An encoded value under its key; absent to remove the key.
struct BinaryEntry {
    std::string_view key;
    std::optional<Data> value;
};

/// The opened file of one domain: a SQLite database in WAL mode, with one row an entry. One thread
/// at a time. Throws NSError; a SQLiteError where SQLite fails.
class DefaultsFile {
  public:
    /// Opens the file; creates it when it is missing. Renames a damaged file, with one line on
    /// standard error, and creates a new one. Refuses the file of another program, of another user
    /// or in another format.
    static std::unique_ptr<DefaultsFile> open(const std::string& path);

    /// Whether the path still leads to this file.
    bool isInPlace() const;
    bool isReadOnly() const { return database_.isReadOnly(); }

    /// Changes when another connection has written.
    std::int64_t dataVersion();
    /// All entries. A value that cannot be decoded is left out, with one line on standard error.
    std::map<std::string, PropertyList, std::less<>> entries();
    /// Stores and removes these entries together, or changes nothing when it throws. replacesAll:
    /// removes all other entries.
    void change(const std::vector<BinaryEntry>& entries, bool replacesAll);

  private:
    DefaultsFile(const std::string& path, const struct stat& status);
    void checkContent();

    std::string path_;
    dev_t device_;
    ino_t inode_;
    SQLiteDatabase database_;
    std::optional<SQLiteStatement> version_;
};

}  // namespace orvalo
