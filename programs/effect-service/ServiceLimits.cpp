#include "programs/effect-service/ServiceLimits.h"

#include <glib.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <vector>

namespace orvalo {

namespace {

constexpr rlim_t kDescriptorLimit = 256;
constexpr rlim_t kThreadLimit = 512;           // As BridgeLimits::threads.
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

bool bindToParent(pid_t parent) {
    // Where the filter for system calls is loaded already, the namespace ends with its first
    // process.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before prctl().
    return getppid() == parent;
}

void applyServiceLimits() {
    limit(RLIMIT_CORE, 0, "core files");
    limit(RLIMIT_NOFILE, kDescriptorLimit, "descriptors");
    limit(RLIMIT_RTTIME, kComputingLimit, "computing");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    limit(RLIMIT_DATA, kMemoryLimit, "memory");
#endif
    if (getppid() == 1) {
        // Elsewhere all the user's threads would count.
        limit(RLIMIT_NPROC, kThreadLimit, "threads");
    }
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        g_warning("The system refuses PR_SET_NO_NEW_PRIVS (%s); the effect runs without it.",
                  g_strerror(errno));
    }
}

void loadCallFilter(int file) {
    std::vector<sock_filter> steps(BPF_MAXINSNS);
    const auto size = read(file, steps.data(), steps.size() * sizeof(sock_filter));
    const sock_fprog program{
        .len = static_cast<unsigned short>(static_cast<std::size_t>(std::max<ssize_t>(size, 0)) /
                                           sizeof(sock_filter)),
        .filter = steps.data()};
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        g_warning(
            "The kernel refuses the filter for system calls (%s); the effect runs without it.",
            g_strerror(errno));
    }
}

}  // namespace orvalo
