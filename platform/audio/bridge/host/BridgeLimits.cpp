#include "platform/audio/bridge/host/BridgeLimits.h"

#include <unistd.h>

#include <algorithm>

namespace orvalo {

std::string durationText(std::chrono::milliseconds duration) {
    constexpr std::chrono::milliseconds kSecond{1000};
    return duration % kSecond == std::chrono::milliseconds(0)
               ? std::to_string(duration / kSecond) + " s"
               : std::to_string(duration.count()) + " ms";
}

std::uint64_t BridgeLimits::defaultMemory() {
    constexpr std::uint64_t kMost = std::uint64_t{2} << 30U;
    const auto pages = sysconf(_SC_PHYS_PAGES);
    const auto pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return kMost;
    }
    return std::min(kMost,
                    static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) / 2);
}

}  // namespace orvalo
