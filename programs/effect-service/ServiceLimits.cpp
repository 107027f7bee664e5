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

constexpr rlim_t kMostDescriptors = 256;
constexpr rlim_t kMostComputing = 2'000'000;  // Microseconds.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// More than the host lets a process of an effect have in memory.
constexpr rlim_t kMostMemory = rlim_t{4} << 30U;
#endif

void limit(__rlimit_resource resource, rlim_t most, const char* what) {
    rlimit limits{};
    getrlimit(resource, &limits);
    // Below the one that the system sets: nobody may raise that.
    limits.rlim_max = std::min(limits.rlim_max, most);
    limits.rlim_cur = limits.rlim_max;
    if (setrlimit(resource, &limits) != 0) {
        g_warning("The limit of %s is refused: %s.", what, g_strerror(errno));
    }
}

}  // namespace

bool bindToHost(pid_t host) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // It may have ended before.
    return getppid() == host;
}

void applyServiceLimits() {
    limit(RLIMIT_CORE, 0, "core files");
    limit(RLIMIT_NOFILE, kMostDescriptors, "descriptors");
    limit(RLIMIT_RTTIME, kMostComputing, "computing");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_DATA, kMostMemory, "memory");
#endif
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        g_warning("Privileges cannot be forgone: %s.", g_strerror(errno));
    }
}

}  // namespace orvalo
