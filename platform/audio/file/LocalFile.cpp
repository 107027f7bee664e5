#include "platform/audio/file/LocalFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/audio/file/FileRefusal.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

LocalFile::LocalFile(const std::string& path)
    : path_(path),
      // A pipe without a writer must not hold the caller up.
      descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ < 0) {
        throw NSError::posix(errno, path);
    }
    struct stat status {};
    const bool isKnown = fstat(descriptor_, &status) == 0;
    if (isKnown && S_ISREG(status.st_mode)) {
        return;
    }
    const int failure = isKnown ? 0 : errno;
    close(descriptor_);
    if (failure != 0) {
        throw NSError::posix(failure, path);
    }
    if (S_ISDIR(status.st_mode)) {
        throw NSError::posix(EISDIR, path);
    }
    throw refusal(FileRefusal::notRegular, path, "not a regular file");
}

LocalFile::~LocalFile() {
    close(descriptor_);
}

std::int64_t LocalFile::size() const {
    struct stat status {};
    return fstat(descriptor_, &status) == 0 ? status.st_size : 0;
}

std::size_t LocalFile::read(std::int64_t from, std::span<std::uint8_t> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto count = pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                 from + static_cast<std::int64_t>(done));
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

}  // namespace orvalo
