#include "platform/foundation/PipeSignalGuard.h"

#include <cerrno>
#include <ctime>

namespace orvalo {

PipeSignalGuard::PipeSignalGuard() noexcept {
    sigemptyset(&pipeSignal_);
    sigaddset(&pipeSignal_, SIGPIPE);
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeSignal_, &maskBefore_);
}

PipeSignalGuard::~PipeSignalGuard() {
    // Pending signals do not count: one that was there before hides the write's own.
    if (!wasPending_) {
        const timespec atOnce{};
        while (sigtimedwait(&pipeSignal_, nullptr, &atOnce) == -1 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
}

}  // namespace orvalo
