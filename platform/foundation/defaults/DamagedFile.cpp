#include "platform/foundation/defaults/DamagedFile.h"

#include <fcntl.h>
#include <glib.h>

#include <cerrno>
#include <cstdio>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

using GDateTimePointer = std::unique_ptr<GDateTime, Release<g_date_time_unref>>;

// SQLite's own names: a database keeps its log when both are renamed alike.
constexpr const char* kLog = "-wal";
constexpr const char* kLogIndex = "-shm";

bool renameTo(const std::string& from, const std::string& to) {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

/// A name with the time in it; each attempt has another.
std::string asideName(const std::string& path, int attempt) {
    const GDateTimePointer now(g_date_time_new_now_local());
    const GText time(g_date_time_format(now.get(), "%Y%m%d-%H%M%S"));
    const auto name = path + ".damaged-" + time.get();
    return attempt == 0 ? name : name + "-" + std::to_string(attempt);
}

/// Renames what stands at the path with the suffix, and returns to what, without the suffix.
std::string renameAside(const std::string& path, const std::string& suffix) {
    for (int attempt = 0;; ++attempt) {
        auto name = asideName(path, attempt);
        if (renameTo(path + suffix, name + suffix)) {
            return name;
        }
        if (errno != EEXIST) {
            throw NSError::posix(errno, path + suffix);
        }
    }
}

}  // namespace

void setDatabaseAside(const std::string& path) {
    const auto name = renameAside(path, "");
    renameTo(path + kLog, name + kLog);
    renameTo(path + kLogIndex, name + kLogIndex);
    g_warning("The settings in %s are damaged. They are kept as %s, and new ones begin.",
              path.c_str(), name.c_str());
}

void setLogAside(const std::string& path) {
    for (const auto* suffix : {kLog, kLogIndex}) {
        try {
            renameAside(path, suffix);
        } catch (const NSError&) {
            // Mostly there is none; and one that stays is of no use to SQLite.
        }
    }
}

}  // namespace orvalo
