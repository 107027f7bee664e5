#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace orvalo {

/// Files and folders that only their owner may see.
inline constexpr mode_t kPrivateFileMode = S_IRUSR | S_IWUSR;
inline constexpr mode_t kPrivateFolderMode = S_IRWXU;

/// Creates a folder with its missing parents where it is not, and takes others' permissions from
/// one that is. Throws NSError when it is none, belongs to another user or cannot be made.
void makePrivateFolder(const std::filesystem::path& folder);

/// The status of a regular file of this user, from which others' permissions are taken. Throws
/// NSError when it is of another kind or user.
struct stat checkedPrivateFile(int descriptor, const std::string& path);
/// The same of a file that is not to be opened. Throws NSError when there is none.
struct stat checkedPrivateFile(const std::string& path);

}  // namespace orvalo
