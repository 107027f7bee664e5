#include "platform/audio/output/Wakeup.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>

#include "platform/foundation/NSError.h"

namespace orvalo {

Wakeup::Wakeup() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (descriptor_ < 0) {
        throw NSError::posix(errno, "eventfd");
    }
}

Wakeup::~Wakeup() {
    close(descriptor_);
}

void Wakeup::signal() const noexcept {
    // Fails only when as many signals as a counter holds are waiting to be seen.
    eventfd_write(descriptor_, 1);
}

void Wakeup::wait(std::chrono::milliseconds limit) noexcept {
    pollfd entry{descriptor_, POLLIN, 0};
    if (poll(&entry, 1, static_cast<int>(limit.count())) > 0) {
        eventfd_t signals = 0;
        eventfd_read(descriptor_, &signals);
    }
}

}  // namespace orvalo
