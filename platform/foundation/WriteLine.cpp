#include "platform/foundation/WriteLine.h"

#include <poll.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <cstddef>

#include "platform/foundation/PipeSignalGuard.h"

namespace orvalo {

namespace {

iovec piece(std::string_view text) {
    // The iovec also serves reading, so it asks for writable memory; writev only reads it.
    return {const_cast<char*>(text.data()), text.size()};
}

bool waitUntilWritable(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

}  // namespace

void writeLine(int descriptor, std::string_view prefix, std::string_view text) noexcept {
    const PipeSignalGuard guard;
    std::array<iovec, 3> pieces{piece(prefix), piece(text), piece("\n")};
    std::size_t first = 0;
    while (first < pieces.size()) {
        const ssize_t result =
            writev(descriptor, &pieces.at(first), static_cast<int>(pieces.size() - first));
        if (result < 0) {
            if (errno == EINTR || (errno == EAGAIN && waitUntilWritable(descriptor))) {
                continue;
            }
            return;
        }
        auto written = static_cast<std::size_t>(result);
        while (first < pieces.size() && written >= pieces.at(first).iov_len) {
            written -= pieces.at(first).iov_len;
            ++first;
        }
        if (first < pieces.size()) {
            pieces.at(first).iov_base = static_cast<char*>(pieces.at(first).iov_base) + written;
            pieces.at(first).iov_len -= written;
        }
    }
}

}  // namespace orvalo
