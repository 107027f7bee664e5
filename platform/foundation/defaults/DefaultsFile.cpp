#include "platform/foundation/defaults/DefaultsFile.h"

#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/defaults/DefaultsFolder.h"
#include "platform/foundation/defaults/PropertyListCoding.h"

namespace orvalo {

namespace {

constexpr int kMostAttempts = 3;
// A page of the smallest size that SQLite knows.
constexpr off_t kSmallestDatabase = 512;

/// Where a path leads that may be a link, to nothing yet too.
std::string placeOf(const std::filesystem::path& path) {
    constexpr int mostLinks = 40;
    auto place = path;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(place, error); ++links) {
        if (links == mostLinks) {
            throw NSError::posix(ELOOP, path);
        }
        place = place.parent_path() / std::filesystem::read_symlink(place, error);
    }
    return place.string();
}

/// Why SQLite cannot make its log: its own code hides the system's.
NSError reasonOf(const SQLiteError& error, const std::string& place) {
    if (!error.isRefusedOpen()) {
        return error;
    }
    const auto folder = std::filesystem::path(place).parent_path();
    return NSError::posix(access(folder.c_str(), W_OK) == 0 ? ENOSPC : errno, folder);
}

/// Opens the database. trouble: set when it can only be read as it is now.
SQLiteDatabase openDatabase(const std::string& place, std::optional<NSError>& trouble) {
    SQLiteDatabase database(place);
    try {
        database.integer("SELECT count(*) FROM sqlite_schema");
        return database;
    } catch (const SQLiteError& error) {
        if (!error.isWantOfPlace()) {
            throw;
        }
        trouble = reasonOf(error, place);
    }
    std::error_code error;
    const auto logSize = std::filesystem::file_size(place + "-wal", error);
    using Access = SQLiteDatabase::Access;
    return SQLiteDatabase(place, !error && logSize > 0 ? Access::ownIndex : Access::alone);
}

}  // namespace

std::unique_ptr<DefaultsFile> DefaultsFile::open(const std::string& path) {
    makePrivateFolder(std::filesystem::path(path).parent_path());
    for (int attempt = 1;; ++attempt) {
        auto place = placeOf(path);
        if (std::error_code error; !std::filesystem::exists(place, error) && !error) {
            createDefaultsFile(place);
        }
        const auto status = checkedPrivateFile(place);
        try {
            return std::unique_ptr<DefaultsFile>(new DefaultsFile(path, place, status));
        } catch (const SQLiteError& error) {
            if (!error.isDamage() || attempt == kMostAttempts) {
                throw;
            }
            setDefaultsFileAside(place, status);
        }
    }
}

DefaultsFile::DefaultsFile(std::string path, std::string place, const struct stat& status)
    : path_(std::move(path)),
      place_(std::move(place)),
      device_(status.st_dev),
      inode_(status.st_ino),
      database_([&] {
          if (status.st_size < kSmallestDatabase) {
              // SQLite would take it for an empty database and remove its log.
              throw SQLiteError(SQLITE_CORRUPT, "it is too short");
          }
          for (const auto* suffix : {"-wal", "-shm"}) {
              if (std::filesystem::exists(place_ + suffix)) {
                  static_cast<void>(checkedPrivateFile(place_ + suffix));
              }
          }
          return openDatabase(place_, trouble_);
      }()) {
    checkContent();
    if (!isReadOnly()) {
        database_.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    }
    version_ = database_.prepare("PRAGMA data_version");
}

void DefaultsFile::checkContent() {
    if (database_.integer("PRAGMA application_id") != kDefaultsApplication) {
        throw NSError::posix(EEXIST, place_ + " is the database of another program");
    }
    const auto version = database_.integer("PRAGMA user_version");
    if (version != kDefaultsVersion) {
        throw NSError::posix(ENOTSUP, place_ + " is in format " + std::to_string(version) +
                                          ", which this program does not know");
    }
    auto check = database_.prepare("PRAGMA quick_check(1)");
    if (!check.step() || check.text(0) != "ok") {
        throw SQLiteError(SQLITE_CORRUPT, std::string(check.text(0)));
    }
    check.reset();
    if (database_.integer("SELECT count(*) FROM pragma_table_info('entries') "
                          "WHERE name IN ('key', 'value')") != 2) {
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
            g_warning("The value of '%s' in %s cannot be read: %s.", key.c_str(), place_.c_str(),
                      error.what());
        }
    }
    return entries;
}

void DefaultsFile::change(const std::vector<BinaryEntry>& entries, bool replacesAll) {
    if (trouble_) {
        throw NSError(*trouble_);
    }
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
