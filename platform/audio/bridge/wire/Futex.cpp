#include "platform/audio/bridge/wire/Futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>
#include <ctime>

namespace orvalo {

static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t) &&
              std::atomic<std::uint32_t>::is_always_lock_free);

void Futex::wait(const std::atomic<std::uint32_t>& word, std::uint32_t value,
                 Deadline deadline) noexcept {
    const auto sinceStart = deadline.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceStart);
    const timespec until{
        .tv_sec = seconds.count(),
        .tv_nsec = std::chrono::nanoseconds(sinceStart - seconds).count(),
    };
    // FUTEX_WAIT expects a relative time.
    syscall(SYS_futex, &word, FUTEX_WAIT_BITSET, value, &until, nullptr, FUTEX_BITSET_MATCH_ANY);
}

void Futex::wake(std::atomic<std::uint32_t>& word) noexcept {
    syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

}  // namespace orvalo
