#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace orvalo {

/// "OrvD", the application_id of a settings file.
inline constexpr std::int64_t kDefaultsApplication = 0x4F727644;
/// The user_version of a settings file: its format.
inline constexpr std::int64_t kDefaultsVersion = 1;
/// The statement that makes its only table. SQLite keeps the text.
inline constexpr const char* kDefaultsTable =
    "CREATE TABLE entries (key TEXT PRIMARY KEY, value BLOB NOT NULL) WITHOUT ROWID";

/// Creates a folder with its missing parents, for its owner only (mode 0700). Removes the
/// permissions of other users from an existing folder. Throws NSError when the folder cannot be
/// created or belongs to another user.
void makePrivateFolder(const std::filesystem::path& folder);

/// Removes the permissions of other users from a regular file of this user and returns its status.
/// Throws NSError when there is no file, or when it is of another kind or user.
struct stat checkedPrivateFile(const std::string& path);

// Both functions lock the folder. They wait at most 5 s while another process has the lock, then
// throw a SQLiteError that isBusy(). They throw NSError when the disk refuses.

/// Creates a settings file without entries, unless the path is a file or a link.
void createDefaultsFile(const std::string& path);

/// Renames a damaged settings file with its log, or the link to it, with one line on standard
/// error. Does nothing when the path no longer leads to the file of that status.
void setDefaultsFileAside(const std::string& path, const struct stat& status);

}  // namespace orvalo
