#include "platform/foundation/defaults/PrivateFile.h"

#include <glib.h>
#include <unistd.h>

#include <cerrno>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr mode_t kOthers = S_IRWXG | S_IRWXO;

/// Where the permissions cannot be taken, as on a read-only disk, nobody can write either.
void takeFromOthers(const std::string& path, const struct stat& status) {
    if ((status.st_mode & kOthers) != 0) {
        static_cast<void>(chmod(path.c_str(), status.st_mode & ~kOthers & ~S_IFMT));
    }
}

void checkOwner(const std::string& path, const struct stat& status) {
    if (status.st_uid != geteuid()) {
        throw NSError::posix(EPERM, path + " belongs to another user");
    }
}

const struct stat& checkedFile(const std::string& path, const struct stat& status) {
    if (!S_ISREG(status.st_mode)) {
        throw NSError::posix(EINVAL, path + " is no regular file");
    }
    checkOwner(path, status);
    takeFromOthers(path, status);
    return status;
}

}  // namespace

void makePrivateFolder(const std::filesystem::path& folder) {
    struct stat status {};
    if (g_mkdir_with_parents(folder.c_str(), kPrivateFolderMode) != 0 ||
        stat(folder.c_str(), &status) != 0) {
        throw NSError::posix(errno, folder);
    }
    checkOwner(folder, status);
    takeFromOthers(folder, status);
}

struct stat checkedPrivateFile(int descriptor, const std::string& path) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        throw NSError::posix(errno, path);
    }
    return checkedFile(path, status);
}

struct stat checkedPrivateFile(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw NSError::posix(errno, path);
    }
    return checkedFile(path, status);
}

}  // namespace orvalo
