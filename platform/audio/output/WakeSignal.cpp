#include "platform/audio/output/Wakeup.h"

#include <cerrno>
#include <ctime>

namespace orvalo {

Wakeup::Wakeup() {
    sem_init(&signals_, 0, 0);
}

Wakeup::~Wakeup() {
    sem_destroy(&signals_);
}

void Wakeup::signal() noexcept {
    // Fails only when as many signals as a counter holds are waiting to be seen.
    sem_post(&signals_);
}

void Wakeup::wait(std::chrono::milliseconds limit) noexcept {
    using namespace std::chrono;
    timespec until{};
    clock_gettime(CLOCK_MONOTONIC, &until);
    const auto end = seconds(until.tv_sec) + nanoseconds(until.tv_nsec) + limit;
    until.tv_sec = duration_cast<seconds>(end).count();
    until.tv_nsec = (end % seconds(1)).count();
    while (sem_clockwait(&signals_, CLOCK_MONOTONIC, &until) != 0) {
        if (errno == ETIMEDOUT) {
            return;
        }
    }
    // Signals that came together are one.
    while (sem_trywait(&signals_) == 0) {
    }
}

}  // namespace orvalo
