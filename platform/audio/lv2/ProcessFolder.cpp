#include "platform/audio/lv2/ProcessFolder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <map>
#include <mutex>
#include <system_error>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

/// The folders to remove when the process exits.
class ExitFolders {
  public:
    static ExitFolders& shared() {
        static auto* const folders = new ExitFolders;
        return *folders;
    }

    void add(const fs::path& folder) {
        const std::scoped_lock lock(mutex_);
        folders_[folder] = getpid();
    }

    void remove(const fs::path& folder) {
        const std::scoped_lock lock(mutex_);
        folders_.erase(folder);
    }

  private:
    // NOLINTNEXTLINE(cert-err33-c): without it a later process removes the folders.
    ExitFolders() {
        std::atexit([] { shared().removeAll(); });
    }

    void removeAll() {
        const std::scoped_lock lock(mutex_);
        for (const auto& [folder, creator] : folders_) {
            // A forked child leaves its parent's folders.
            if (creator == getpid()) {
                std::error_code ignored;
                fs::remove_all(folder, ignored);
            }
        }
    }

    std::mutex mutex_;
    std::map<fs::path, pid_t> folders_;  ///< With the process that created each.
};

/// Opens and locks the folder; none when it is locked or belongs to another user.
FileDescriptor locked(const fs::path& folder) {
    FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || status.st_uid != geteuid() ||
        flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return {};
    }
    return file;
}

void removeAbandoned(const fs::path& place, const std::string& beginning) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(place, error)) {
        if (entry.path().filename().string().starts_with(beginning) && locked(entry.path())) {
            fs::remove_all(entry.path(), error);
        }
    }
}

/// Whether the path still names the open folder.
bool isStillThere(const FileDescriptor& folder, const fs::path& path) {
    struct stat opened {};
    struct stat named {};
    return fstat(folder.get(), &opened) == 0 && stat(path.c_str(), &named) == 0 &&
           opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

/// The errors of fs::temp_directory_path() do not name the folder, and g_get_tmp_dir() keeps to its
/// first answer.
fs::path temporaryFolder() {
    const char* named = g_getenv("TMPDIR");
    return named == nullptr || *named == '\0' ? "/tmp" : named;
}

}  // namespace

ProcessFolder::ProcessFolder(const std::string& kind) {
    const auto place = temporaryFolder();
    const auto beginning = kind + "-";
    removeAbandoned(place, beginning);
    // Another process in removeAbandoned() may remove the folder before it is locked.
    constexpr int kTries = 10;
    for (int count = 0; !lock_; ++count) {
        auto made = (place / (beginning + "XXXXXX")).string();
        if (count == kTries || mkdtemp(made.data()) == nullptr) {
            throw NSError::posix(errno, made);
        }
        path_ = made;
        lock_ = locked(path_);
        if (!isStillThere(lock_, path_)) {
            lock_ = {};
            std::error_code ignored;
            fs::remove(path_, ignored);
        }
    }
    ExitFolders::shared().add(path_);
}

ProcessFolder::~ProcessFolder() {
    ExitFolders::shared().remove(path_);
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

}  // namespace orvalo
