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

/// Creates a folder with its missing parents, for its owner only (mode 0700); takes the permissions
/// of others from an existing one. Throws NSError when it cannot be made or belongs to another
/// user.
void makePrivateFolder(const std::filesystem::path& folder);

/// The status of a regular file of this user, after the permissions of others were taken from it.
/// Throws NSError when there is none, or when it is of another kind or user.
struct stat checkedPrivateFile(const std::string& path);

// Both wait at most 5 s for another process that does the same in the folder; then they throw a
// SQLiteError that isBusy(). They throw NSError when the disk refuses.

/// Makes a settings file without entries, unless there is a file or a link.
void createDefaultsFile(const std::string& path);

/// Renames a damaged settings file with its log, or the link to it, and says so on standard error.
/// Does nothing when the path no longer leads to the file of that status.
void setDefaultsFileAside(const std::string& path, const struct stat& status);

}  // namespace orvalo
