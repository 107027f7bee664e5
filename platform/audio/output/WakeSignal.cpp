#include "platform/audio/output/WakeSignal.h"

#include <cerrno>
#include <ctime>

namespace orvalo {

WakeSignal::WakeSignal() {
    sem_init(&signals_, 0, 0);
}

WakeSignal::~WakeSignal() {
    sem_destroy(&signals_);
}

void WakeSignal::send() noexcept {
    // Fails only at the counter's maximum, when a signal is pending anyway.
    sem_post(&signals_);
}

void WakeSignal::wait(std::chrono::milliseconds limit) noexcept {
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
    while (sem_trywait(&signals_) == 0) {
    }
}

}  // namespace orvalo
