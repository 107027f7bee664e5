#include "platform/foundation/defaults/DefaultsFile.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <cerrno>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DamagedFile.h"
#include "platform/foundation/defaults/DefaultsSchema.h"
#include "platform/foundation/defaults/PrivateFile.h"
#include "platform/foundation/defaults/PropertyListCoding.h"
#include "platform/foundation/defaults/SQLiteError.h"
#include "platform/foundation/defaults/SQLiteTransaction.h"

namespace orvalo {

namespace {

// 1 MB.
constexpr int kPagesToCheckpoint = 250;
// A log that grew to here has never been without a reader; then the writer waits for them.
constexpr int kPagesToShorten = 4 * kPagesToCheckpoint;
// Readers take some ten microseconds. The writer must not wait long for a stopped one.
constexpr int kPatienceWithReaders = 100;
constexpr int kPatience = 10'000;
// How many changes lie, at least, between two removals of what removed entries leave behind.
constexpr std::int64_t kChangesToPurge = 256;
// A page of the smallest size that SQLite knows.
constexpr off_t kSmallestDatabase = 512;

constexpr const char* kInsert = "INSERT OR REPLACE INTO entries (key, value) VALUES (?1, ?2)";
constexpr const char* kRemove =
    "INSERT OR REPLACE INTO entries (key) SELECT key FROM entries WHERE key = ?1 AND value NOTNULL";
constexpr const char* kRemoveAll =
    "INSERT OR REPLACE INTO entries (key) SELECT key FROM entries WHERE value NOTNULL";

bool createFile(const std::string& path) {
    const int descriptor =
        open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kPrivateFileMode);
    if (descriptor < 0) {
        if (errno == EEXIST) {
            return false;
        }
        throw NSError::posix(errno, path);
    }
    close(descriptor);
    return true;
}

FileIdentity prepared(const std::string& path, bool isCreated) {
    struct stat status {};
    if (isCreated && stat(path.c_str(), &status) != 0 && createFile(path)) {
        // A log beside no file was another file's.
        setLogAside(path);
    }
    status = checkedPrivateFile(path);
    if (status.st_size == 0 && LogSizes(path).log > 0) {
        throw SQLiteError(SQLITE_CORRUPT, "it is empty beside a log");
    }
    // SQLite takes it for an empty one.
    if (status.st_size > 0 && status.st_size < kSmallestDatabase) {
        throw SQLiteError(SQLITE_CORRUPT, "it is too short");
    }
    for (const auto* suffix : {"-wal", "-shm"}) {
        if (struct stat other{}; stat((path + suffix).c_str(), &other) == 0) {
            static_cast<void>(checkedPrivateFile(path + suffix));
        }
    }
    return FileIdentity(status);
}

/// In a folder that cannot be written, and on a full disk, SQLite finds no place for the log and
/// its index.
bool isWantOfPlace(const SQLiteError& error) {
    const auto code = static_cast<int>(error.code());
    switch (code & 0xFF) {
        case SQLITE_CANTOPEN:
        case SQLITE_READONLY:
        case SQLITE_FULL:
            return true;
        default:
            return code == SQLITE_IOERR_SHMSIZE || code == SQLITE_IOERR_SHMOPEN ||
                   code == SQLITE_IOERR_WRITE;
    }
}

/// trouble: set when the log's index cannot be shared, and the file only read as it is now, which
/// the sizes tell.
SQLiteDatabase openDatabase(const std::string& path, std::optional<NSError>& trouble,
                            LogSizes& sizes) {
    SQLiteDatabase database(path);
    try {
        database.integer("SELECT count(*) FROM sqlite_schema");
    } catch (const SQLiteError& error) {
        if (!isWantOfPlace(error)) {
            throw;
        }
        trouble = error;
    }
    if (trouble) {
        using Access = SQLiteDatabase::Access;
        sizes = LogSizes(path);
        return SQLiteDatabase(path, sizes.log > 0 ? Access::ownIndex : Access::alone);
    }
    return database;
}

/// The value that is stored; absent, with a line, when it cannot be read.
std::optional<PropertyList> decoded(const std::string& path, const std::string& key,
                                    std::span<const std::uint8_t> bytes) {
    try {
        return propertyList(bytes);
    } catch (const NSError& error) {
        g_warning("The value of '%s' in %s is not readable: %s.", key.c_str(), path.c_str(),
                  error.what());
        return std::nullopt;
    }
}

void check(SQLiteDatabase& database, const char* pragma) {
    auto statement = database.prepare(pragma);
    if (!statement.step() || statement.text(0) != "ok") {
        throw SQLiteError(SQLITE_CORRUPT, std::string(statement.text(0)));
    }
}

}  // namespace

DefaultsFile::DefaultsFile(const std::string& path, ChangeMapping* counter)
    : path_(path),
      identity_(prepared(path, counter != nullptr)),
      logSizes_(path),
      database_(openDatabase(path, trouble_, logSizes_)),
      isFrozen_(trouble_),
      nextCheckpoint_(kPagesToCheckpoint) {
    try {
        bringToThisVersion(database_, path, counter);
    } catch (const SQLiteError& error) {
        if (!isWantOfPlace(error) || isEmpty(database_)) {
            throw;
        }
        trouble_ = error;
    }
    isOlder_ = !isOfThisVersion(database_);
    check(database_, "PRAGMA quick_check(1)");
    try {
        version_ = database_.prepare("PRAGMA user_version");
        select_ = selectEntries(database_, path);
        if (isOlder_) {
            return;
        }
        insert_ = database_.prepare(kInsert);
        remove_ = database_.prepare(kRemove);
        purged_ = database_.integer("SELECT purged FROM state");
    } catch (const SQLiteError& error) {
        // It says that it is ours, and has not what ours have.
        throw SQLiteError(SQLITE_CORRUPT, error.what());
    }
}

bool DefaultsFile::isInPlace() const {
    // Somebody who can write begins a log or its index.
    const bool isLeftBehind = isFrozen_ && LogSizes(path_) != logSizes_;
    return identity_.isAt(path_) && !isLeftBehind;
}

DefaultsChanges DefaultsFile::changes() {
    if (isFrozen_ && seen_ > 0) {
        return {};  // Nobody writes, and who begins to is not to be read beside.
    }
    if (isOlder_) {
        seen_ = 0;  // Among what its programs purge may be a key that is known here.
    }
    version_->step();
    const auto version = version_->integer(0);
    version_->reset();
    refuseNewerVersion(version, path_);
    DefaultsChanges changes;
    changes.isWhole = seen_ == 0;
    auto last = seen_;
    select_->bind(1, seen_);
    while (select_->step()) {
        if (seen_ > 0 && select_->integer(3) > seen_) {
            // Among what was purged may be a key that is still known here.
            select_->reset();
            seen_ = 0;
            return this->changes();
        }
        last = select_->integer(0);
        DefaultsChanges::Entry entry{std::string(select_->text(1)), std::nullopt};
        if (!select_->isNull(2)) {
            entry.value = decoded(path_, entry.key, select_->data(2));
        }
        if (entry.value || !changes.isWhole) {
            changes.entries.push_back(std::move(entry));
        }
    }
    select_->reset();
    seen_ = last;
    return changes;
}

void DefaultsFile::write(const BinaryEntry& entry) {
    auto& statement = entry.value ? *insert_ : *remove_;
    statement.bind(1, entry.key);
    if (entry.value) {
        statement.bind(2, *entry.value);
    }
    statement.finish();
}

void DefaultsFile::putAll(std::span<const BinaryEntry> entries, bool replaces) {
    const auto before = database_.lastRow();
    SQLiteTransaction transaction(database_);
    if (replaces) {
        database_.run(kRemoveAll);
    }
    for (const auto& entry : entries) {
        write(entry);
    }
    transaction.commit();
    const auto change = database_.lastRow();
    if (change == before) {
        return;  // There was nothing to remove.
    }
    if (seen_ > 0) {
        seen_ = change;
    }
    if (replaces) {
        purge(change);
    }
    limitLog();
}

void DefaultsFile::put(std::string_view key, std::optional<std::span<const std::uint8_t>> value) {
    const auto before = database_.lastRow();
    write({key, value});
    const auto change = database_.lastRow();
    if (change == before) {
        return;  // There was nothing to remove.
    }
    if (seen_ > 0) {
        seen_ = change;
    }
    if (!value && change - purged_ >= kChangesToPurge) {
        purge(change);
    }
    limitLog();
}

void DefaultsFile::purge(std::int64_t before) {
    try {
        SQLiteTransaction transaction(database_);
        const auto number = std::to_string(before);
        database_.run(("DELETE FROM entries WHERE value IS NULL AND change < " + number +
                       "; UPDATE state SET purged = " + number)
                          .c_str());
        transaction.commit();
        purged_ = before;
    } catch (const SQLiteError& error) {
        // What was put is stored; this can as well happen another time, unless it cannot.
        if (error.isDamage()) {
            throw;
        }
    }
}

void DefaultsFile::limitLog() {
    const int pages = database_.logPages();
    if (pages < kPagesToCheckpoint) {
        nextCheckpoint_ = kPagesToCheckpoint;  // The log has begun anew.
        return;
    }
    if (pages < nextCheckpoint_) {
        return;
    }
    if (pages < kPagesToShorten) {
        database_.checkpoint();
    } else {
        database_.setPatience(kPatienceWithReaders);
        database_.shortenLog();
        database_.setPatience(kPatience);
    }
    nextCheckpoint_ = pages + kPagesToCheckpoint;
}

void DefaultsFile::verify() {
    check(database_, "PRAGMA integrity_check(1)");
}

}  // namespace orvalo
