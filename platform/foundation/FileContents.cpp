#include "platform/foundation/FileContents.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

Data contentsOfFile(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        throw NSError::posix(errno, path);
    }
    Data content;
    std::array<std::uint8_t, std::size_t{64} * 1024> piece{};
    for (;;) {
        const auto count = read(file.get(), piece.data(), piece.size());
        if (count < 0 && errno != EINTR) {
            throw NSError::posix(errno, path);
        }
        if (count == 0) {
            return content;
        }
        if (count > 0) {
            content.insert(content.end(), piece.begin(), piece.begin() + count);
        }
    }
}

}  // namespace orvalo
