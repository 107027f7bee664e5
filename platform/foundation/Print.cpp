#include "platform/foundation/Print.h"

#include <poll.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <mutex>

namespace orvalo {

namespace {

/// For its life, writes of the calling thread to closed pipes fail without raising SIGPIPE. Leaves
/// the thread's signal mask and a SIGPIPE that was pending already as they were.
class PipeSignalGuard {
  public:
    PipeSignalGuard() noexcept {
        sigemptyset(&pipeSignal_);
        sigaddset(&pipeSignal_, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal_, &maskBefore_);
    }
    ~PipeSignalGuard() {
        // A signal is pending at most once, so an earlier SIGPIPE stays pending.
        if (!wasPending_) {
            const timespec atOnce{};
            while (sigtimedwait(&pipeSignal_, nullptr, &atOnce) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    }
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

  private:
    sigset_t pipeSignal_{};
    sigset_t maskBefore_{};
    bool wasPending_ = false;
};

iovec piece(std::string_view text) {
    // writev() only reads the memory, but shares the type with readv().
    return {const_cast<char*>(text.data()), text.size()};
}

bool waitUntilWritable(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

}  // namespace

void print(std::string_view text) {
    // One write alone does not keep lines whole: pipes split long ones.
    static constinit std::mutex mutex;
    const std::lock_guard lock(mutex);
    writeLine(STDOUT_FILENO, {}, text);
}

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
