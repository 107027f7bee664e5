#include "platform/foundation/defaults/ChangeCounter.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PrivateFile.h"

namespace orvalo {

namespace {

using std::chrono::microseconds;

// As long as SQLite's own locks are waited for.
constexpr std::chrono::seconds kPatience(10);
// A write takes some ten microseconds. Waiting in the kernel would have no end while the holder is
// stopped.
constexpr microseconds kFirstWait(10);
constexpr microseconds kLongestWait(1000);

int opened(const std::string& path, bool& isWritable) {
    constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    isWritable = true;
    int descriptor = open(path.c_str(), O_RDWR | O_CREAT | flags, kPrivateFileMode);
    if (descriptor < 0 && (errno == EACCES || errno == EROFS || errno == EPERM)) {
        isWritable = false;
        const int reason = errno;
        descriptor = open(path.c_str(), O_RDONLY | flags);
        errno = errno == ENOENT ? reason : errno;
    }
    if (descriptor < 0) {
        throw NSError::posix(errno, path);
    }
    return descriptor;
}

/// Gives the file its size, and room on the disk even where it has a hole: a mapping that is
/// written to where there is none ends the program.
void makeRoom(int descriptor, bool isWritable, const std::string& path) {
    struct stat status {};
    fstat(descriptor, &status);
    if (isWritable) {
        if (const int error = posix_fallocate(descriptor, 0, ChangeMapping::size); error != 0) {
            throw NSError::posix(error, path);
        }
    } else if (status.st_size < static_cast<off_t>(ChangeMapping::size)) {
        throw NSError::posix(EROFS, path);
    }
}

}  // namespace

ChangeCounter::Lock::~Lock() {
    if (descriptor_ >= 0) {
        flock(descriptor_, LOCK_UN);
    }
}

ChangeCounter::Write::Write(ChangeMapping& mapping) : mapping_(mapping) {
    mapping_.setCount(mapping_.count() | 1U);
}

ChangeCounter::Write::~Write() {
    mapping_.setCount((mapping_.count() | 1U) + 1);
}

ChangeCounter::ChangeCounter(const std::string& path) : path_(path) {
    bool isWritable = false;
    descriptor_ = opened(path, isWritable);
    try {
        identity_ = FileIdentity(checkedPrivateFile(descriptor_, path));
        const auto held = lock();
        makeRoom(descriptor_, isWritable, path);
        mapping_ = std::make_shared<ChangeMapping>(descriptor_, isWritable, path);
        if (isWritable && !mapping_->hasMagic()) {
            mapping_->initialise();
        }
    } catch (...) {
        close(descriptor_);
        throw;
    }
}

ChangeCounter::~ChangeCounter() {
    close(descriptor_);
}

std::optional<ChangeCounter::Lock> ChangeCounter::tryLock() const {
    while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR) {
            return std::nullopt;
        }
    }
    return Lock(descriptor_);
}

ChangeCounter::Lock ChangeCounter::lock() const {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    for (auto wait = kFirstWait;; wait = std::min(wait * 2, kLongestWait)) {
        if (auto held = tryLock()) {
            return std::move(*held);
        }
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() > deadline) {
            throw NSError::posix(errno == EWOULDBLOCK ? ETIMEDOUT : errno, path_);
        }
        std::this_thread::sleep_for(wait);
    }
}

}  // namespace orvalo
