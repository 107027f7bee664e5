#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/ChangeMapping.h"
#include "platform/foundation/defaults/DefaultsChanges.h"
#include "platform/foundation/defaults/FileIdentity.h"
#include "platform/foundation/defaults/LogSizes.h"
#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

/// A domain's opened file: a SQLite database in WAL mode. One thread at a time. Every operation
/// throws NSError; a SQLiteError that isDamage() when the file is damaged.
///
/// Each entry carries the number of the change that made it, higher than all before; a removed one
/// stays for a while as an entry without a value. So whoever knows up to which change he has read
/// reads only what came later.
class DefaultsFile {
  public:
    /// Opens the file, whose path is no link, and looks it over. A file of a newer version, of
    /// another program or of another user is refused and left alone. With the domain's counter,
    /// whose lock the caller holds, it is created where it is missing, and one of an older version
    /// brought to this one, at which the counter is marked. Without it, and where it cannot be
    /// written, it is only read.
    DefaultsFile(const std::string& path, ChangeMapping* counter);

    /// Whether the file is still the one that others find, and may be read as it was opened.
    bool isInPlace() const;
    bool isReadOnly() const { return isOlder_ || database_.isReadOnly(); }
    /// What was in the way, at the opening, of more than reading; absent when nothing was.
    const std::optional<NSError>& trouble() const { return trouble_; }

    /// What has changed since the last call; all there is at the first. Refused as at the opening
    /// when a newer version has brought the file forward meanwhile.
    DefaultsChanges changes();
    /// Has the next call of changes() give all there is.
    void forgetChanges() { seen_ = 0; }
    /// Stores a binary property list, or removes the key. The caller holds the domain's lock and
    /// has read all changes; this one is not among the next.
    void put(std::string_view key, std::optional<std::span<const std::uint8_t>> value);
    /// put() of all these together, or of none when it throws. replaces: removes all others.
    void putAll(std::span<const BinaryEntry> entries, bool replaces);
    /// Throws SQLiteError unless the whole file is in order.
    void verify();

  private:
    void write(const BinaryEntry& entry);
    void purge(std::int64_t before);
    void limitLog();

    std::string path_;
    FileIdentity identity_;
    std::optional<NSError> trouble_;
    LogSizes logSizes_;
    SQLiteDatabase database_;
    bool isFrozen_;  ///< Without a share in the log, it is read once, and until somebody can write.
    bool isOlder_ = false;  ///< Left in the form of an older version, in which it is only read.
    std::optional<SQLiteStatement> version_;
    std::optional<SQLiteStatement> select_;
    std::optional<SQLiteStatement> insert_;
    std::optional<SQLiteStatement> remove_;
    std::int64_t seen_ = 0;    ///< The last change that was read.
    std::int64_t purged_ = 0;  ///< The last change after which removed entries were purged here.
    int nextCheckpoint_;       ///< Pages in the log.
};

}  // namespace orvalo
