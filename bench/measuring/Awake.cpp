#include "bench/measuring/Awake.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace orvalo::bench {

namespace {

constexpr auto kPath = "/dev/cpu_dma_latency";

}  // namespace

Awake::Awake() : request_(open(kPath, O_WRONLY | O_CLOEXEC)) {
    // The longest wake-up time in microseconds; the request is valid until the file is closed.
    const std::int32_t longest = 0;
    if (!request_ || write(request_.get(), &longest, sizeof longest) != sizeof longest) {
        throw std::system_error(errno, std::generic_category(), kPath);
    }
}

}  // namespace orvalo::bench
