#include "platform/foundation/defaults/DefaultsFile.h"

#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsFolder.h"
#include "platform/foundation/defaults/PropertyListCoding.h"

namespace orvalo {

namespace {

constexpr int kMostAttempts = 5;
// The smallest page size of SQLite.
constexpr off_t kSmallestDatabase = 512;

/// Opens the database after checking its size, and the owner of SQLite's files beside it. size: in
/// bytes.
SQLiteDatabase checkedDatabase(const std::string& path, off_t size) {
    if (size < kSmallestDatabase) {
        // SQLite would open a shorter file as an empty database and remove its log.
        throw SQLiteError(SQLITE_CORRUPT, "it is too short");
    }
    // SQLite's files lie beside the target of a link.
    std::error_code error;
    const auto place = std::filesystem::canonical(path, error).string();
    for (const auto* suffix : {"-wal", "-shm"}) {
        if (access((place + suffix).c_str(), F_OK) == 0) {
            static_cast<void>(checkedPrivateFile(place + suffix));
        }
    }
    SQLiteDatabase database(path);
    try {
        database.integer("SELECT count(*) FROM sqlite_schema");
    } catch (const SQLiteError&) {
        const auto folder = std::filesystem::path(place).parent_path();
        if (access(folder.c_str(), W_OK) != 0) {
            throw NSError::posix(errno, folder);  // SQLite cannot create its log there.
        }
        throw;
    }
    return database;
}

}  // namespace

std::unique_ptr<DefaultsFile> DefaultsFile::open(const std::string& path) {
    makePrivateFolder(std::filesystem::path(path).parent_path());
    // The path leads nowhere for a moment when another process sets a damaged file aside.
    for (int attempt = 1;; ++attempt) {
        createDefaultsFile(path);
        struct stat status {};
        try {
            status = checkedPrivateFile(path);
            return std::unique_ptr<DefaultsFile>(new DefaultsFile(path, status));
        } catch (const SQLiteError& error) {
            if (attempt == kMostAttempts || !(error.isDamage() || error.isMissing())) {
                throw;
            }
            if (error.isDamage()) {
                setDefaultsFileAside(path, status);
            }
        } catch (const NSError& error) {
            if (attempt == kMostAttempts || error.code() != ENOENT) {
                throw;
            }
        }
    }
}

DefaultsFile::DefaultsFile(const std::string& path, const struct stat& status)
    : path_(path),
      device_(status.st_dev),
      inode_(status.st_ino),
      database_(checkedDatabase(path, status.st_size)) {
    checkContent();
    if (!isReadOnly()) {
        database_.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    }
    version_ = database_.prepare("PRAGMA data_version");
}

void DefaultsFile::checkContent() {
    if (database_.integer("PRAGMA application_id") != kDefaultsApplication) {
        throw NSError::posix(EEXIST, path_ + " is the database of another program");
    }
    const auto version = database_.integer("PRAGMA user_version");
    if (version != kDefaultsVersion) {
        throw NSError::posix(ENOTSUP, path_ + " is in format " + std::to_string(version) +
                                          ", which this program does not know");
    }
    auto check = database_.prepare("PRAGMA quick_check(1)");
    if (!check.step() || check.text(0) != "ok") {
        throw SQLiteError(SQLITE_CORRUPT, std::string(check.text(0)));
    }
    check.reset();
    auto table = database_.prepare("SELECT sql FROM sqlite_schema WHERE name = 'entries'");
    if (!table.step() || table.text(0) != kDefaultsTable) {
        throw SQLiteError(SQLITE_CORRUPT, "it has no table of entries");
    }
}

bool DefaultsFile::isInPlace() const {
    struct stat status {};
    return stat(path_.c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_;
}

std::int64_t DefaultsFile::dataVersion() {
    version_->step();
    const auto version = version_->integer(0);
    version_->reset();
    return version;
}

std::map<std::string, PropertyList, std::less<>> DefaultsFile::entries() {
    std::map<std::string, PropertyList, std::less<>> entries;
    auto select = database_.prepare("SELECT key, value FROM entries");
    while (select.step()) {
        std::string key(select.text(0));
        try {
            auto value = propertyList(select.data(1));
            entries.insert_or_assign(std::move(key), std::move(value));
        } catch (const NSError& error) {
            g_warning("The value of '%s' in %s cannot be read: %s.", key.c_str(), path_.c_str(),
                      error.what());
        }
    }
    return entries;
}

void DefaultsFile::change(const std::vector<BinaryEntry>& entries, bool replacesAll) {
    auto insert = database_.prepare("INSERT OR REPLACE INTO entries VALUES (?1, ?2)");
    auto remove = database_.prepare("DELETE FROM entries WHERE key = ?1");
    database_.run("BEGIN IMMEDIATE");
    try {
        if (replacesAll) {
            database_.run("DELETE FROM entries");
        }
        for (const auto& [key, value] : entries) {
            auto& statement = value ? insert : remove;
            statement.bind(1, key);
            if (value) {
                statement.bind(2, *value);
            }
            statement.finish();
        }
        database_.run("COMMIT");
    } catch (const SQLiteError&) {
        try {
            database_.run("ROLLBACK");
        } catch (const SQLiteError&) {
            // SQLite rolls back by itself after some failures.
        }
        throw;
    }
}

}  // namespace orvalo
