#include "programs/effect-service/ServiceLimits.h"

#include <glib.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace orvalo {

namespace {

constexpr rlim_t kDescriptorLimit = 256;
constexpr rlim_t kComputingLimit = 2'000'000;  // Microseconds.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Above BridgeLimits::memory, which gives a better message.
constexpr rlim_t kMemoryLimit = rlim_t{4} << 30U;
#endif

void limit(__rlimit_resource resource, rlim_t most, const char* what) {
    rlimit limits{};
    getrlimit(resource, &limits);
    // The hard limit cannot be raised.
    limits.rlim_max = std::min(limits.rlim_max, most);
    limits.rlim_cur = limits.rlim_max;
    if (setrlimit(resource, &limits) != 0) {
        g_warning("The system refuses the limit of %s (%s); the effect runs without it.", what,
                  g_strerror(errno));
    }
}

}  // namespace

bool bindToHost(pid_t host) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The host may have ended before prctl().
    return getppid() == host;
}

void applyServiceLimits() {
    limit(RLIMIT_CORE, 0, "core files");
    limit(RLIMIT_NOFILE, kDescriptorLimit, "descriptors");
    limit(RLIMIT_RTTIME, kComputingLimit, "computing");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_DATA, kMemoryLimit, "memory");
#endif
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        g_warning("The system refuses PR_SET_NO_NEW_PRIVS (%s); the effect runs without it.",
                  g_strerror(errno));
    }
}

}  // namespace orvalo
