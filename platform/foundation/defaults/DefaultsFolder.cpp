#include "platform/foundation/defaults/DefaultsFolder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyListDate.h"
#include "platform/foundation/defaults/SQLiteDatabase.h"

namespace orvalo {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 5s;
// The suffixes that SQLite uses: a renamed database finds its log when the log is renamed alike.
constexpr const char* kLog = "-wal";
constexpr const char* kLogIndex = "-shm";

struct stat checkedOwner(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw NSError::posix(errno, path);
    }
    if (status.st_uid != geteuid()) {
        throw NSError::posix(EPERM, path + " belongs to another user");
    }
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    if ((status.st_mode & others) != 0) {
        // May fail on a read-only disk, where other users cannot write either.
        static_cast<void>(chmod(path.c_str(), status.st_mode & S_IRWXU));
    }
    return status;
}

/// The folder of a file, locked for this process until the descriptor is closed.
FileDescriptor lockedFolderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor) {
        throw NSError::posix(errno, folder);
    }
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) {
            throw NSError::posix(errno, folder);
        }
        if (std::chrono::steady_clock::now() > end) {
            throw SQLiteError(SQLITE_BUSY, "another process has kept its folder locked for 5 s");
        }
        std::this_thread::sleep_for(1ms);
    }
    return descriptor;
}

void removeDatabase(const std::string& path) {
    for (const auto* suffix : {"", kLog, kLogIndex, "-journal"}) {
        unlink((path + suffix).c_str());
    }
}

void writeEmptyDatabase(const std::string& path) {
    if (!FileDescriptor(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600))) {
        throw NSError::posix(errno, path);
    }
    SQLiteDatabase database(path);
    database.run("BEGIN");
    database.run(kDefaultsTable);
    database.run("PRAGMA application_id = " + std::to_string(kDefaultsApplication));
    database.run("PRAGMA user_version = " + std::to_string(kDefaultsVersion));
    database.run("COMMIT; PRAGMA journal_mode = WAL");
}

}  // namespace

void makePrivateFolder(const std::filesystem::path& folder) {
    if (g_mkdir_with_parents(folder.c_str(), S_IRWXU) != 0) {
        throw NSError::posix(errno, folder);
    }
    static_cast<void>(checkedOwner(folder));
}

struct stat checkedPrivateFile(const std::string& path) {
    struct stat status {};
    // Before the owner: a folder keeps its permissions.
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw NSError::posix(EINVAL, path + " is not a regular file");
    }
    return checkedOwner(path);
}

void createDefaultsFile(const std::string& path) {
    // A dangling link counts, too.
    const auto isThere = [&] {
        return faccessat(AT_FDCWD, path.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    };
    if (isThere()) {
        return;
    }
    const auto lock = lockedFolderOf(path);
    if (isThere()) {
        return;
    }
    // SQLite would replay the log of a removed database into the new one.
    removeDatabase(path);
    // Under another name first: a process that dies here leaves no half-made file.
    const auto draft = path + ".new";
    removeDatabase(draft);
    try {
        writeEmptyDatabase(draft);
        if (rename(draft.c_str(), path.c_str()) != 0) {
            throw NSError::posix(errno, path);
        }
    } catch (const NSError&) {
        removeDatabase(draft);
        throw;
    }
    removeDatabase(draft);
}

void setDefaultsFileAside(const std::string& path, const struct stat& status) {
    const auto lock = lockedFolderOf(path);
    struct stat now {};
    if (stat(path.c_str(), &now) != 0 || now.st_dev != status.st_dev ||
        now.st_ino != status.st_ino) {
        return;  // Another process has renamed it.
    }
    const GDateTimePointer time(g_date_time_new_now_local());
    // With microseconds, so that the folder's lock makes the name unique.
    const auto name =
        path + ".damaged-" + GText(g_date_time_format(time.get(), "%Y%m%d-%H%M%S-%f")).get();
    if (rename(path.c_str(), name.c_str()) != 0) {
        throw NSError::posix(errno, path);
    }
    for (const auto* suffix : {kLog, kLogIndex}) {
        rename((path + suffix).c_str(), (name + suffix).c_str());
    }
    g_warning("The settings in %s are damaged. They are kept as %s, and new ones begin.",
              path.c_str(), name.c_str());
}

}  // namespace orvalo
