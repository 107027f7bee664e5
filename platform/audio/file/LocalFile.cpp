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
      // O_NONBLOCK: opening a pipe that has no writer would block.
      descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    struct stat status {};
    if (!descriptor_ || fstat(descriptor_.get(), &status) != 0) {
        throw NSError::posix(errno, path);
    }
    if (S_ISDIR(status.st_mode)) {
        throw NSError::posix(EISDIR, path);
    }
    if (!S_ISREG(status.st_mode)) {
        throw refusal(FileRefusal::notRegular, path, "not a regular file");
    }
}

std::int64_t LocalFile::size() const {
    struct stat status {};
    return fstat(descriptor_.get(), &status) == 0 ? status.st_size : 0;
}

std::size_t LocalFile::read(std::int64_t from, std::span<std::uint8_t> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto count = pread(descriptor_.get(), bytes.data() + done, bytes.size() - done,
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
