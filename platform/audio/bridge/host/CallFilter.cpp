#include "platform/audio/bridge/host/CallFilter.h"

#include <linux/sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr std::array kForbidden {
    // Other processes.
    "kcmp", "pidfd_getfd", "process_vm_readv", "process_vm_writev", "process_madvise",
#if !defined(__SANITIZE_ADDRESS__)
        // The leak sanitizer needs it.
        "ptrace",
#endif
        // The file systems.
        "chroot", "fsconfig", "fsmount", "fsopen", "fspick", "mount", "mount_setattr", "move_mount",
        "open_by_handle_at", "open_tree", "pivot_root", "quotactl", "quotactl_fd", "swapoff",
        "swapon", "umount2",
        // The kernel and the machine.
        "acct", "bpf", "clock_settime", "delete_module", "finit_module", "init_module", "ioperm",
        "iopl", "kexec_file_load", "kexec_load", "lookup_dcookie", "perf_event_open", "reboot",
        "setdomainname", "sethostname", "settimeofday", "syslog", "userfaultfd", "vhangup",
        // Keys and namespaces.
        "add_key", "keyctl", "request_key", "setns", "unshare",
        // The X server would take the number of a segment for one of its own namespace.
        "shmget",
        // It creates sockets without the system call that the filter checks.
        "io_uring_setup"
};

constexpr std::array<scmp_datum_t, 7> kNamespaces{CLONE_NEWNS,  CLONE_NEWCGROUP, CLONE_NEWUTS,
                                                  CLONE_NEWIPC, CLONE_NEWUSER,   CLONE_NEWPID,
                                                  CLONE_NEWNET};
// The kernel ignores the upper half of an int in a register.
constexpr scmp_datum_t kInt = 0xffffffff;

/// The condition that a call's first argument compares so. The library's macros for it are C.
constexpr scmp_arg_cmp firstArgument(scmp_compare comparison, scmp_datum_t a, scmp_datum_t b = 0) {
    return {0, comparison, a, b};
}

/// A filter under construction. The first error is kept; nothing follows it.
class Filter {
  public:
    Filter() : filter_(seccomp_init(SCMP_ACT_ALLOW)), error_(filter_ == nullptr ? -ENOMEM : 0) {}

    template <typename... Conditions>
    void forbid(const char* name, int error, const Conditions&... conditions) {
        const int number = seccomp_syscall_resolve_name(name);
        // The library or the architecture may lack the call.
        if (error_ == 0 && number != __NR_SCMP_ERROR) {
            error_ = seccomp_rule_add(filter_.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(error)),
                                      number, sizeof...(conditions), conditions...);
        }
    }
    /// Zero, or a negative errno.
    int write(int file) const {
        return error_ == 0 ? seccomp_export_bpf(filter_.get(), file) : error_;
    }

  private:
    std::unique_ptr<void, Release<seccomp_release>> filter_;
    int error_;
};

Filter makeFilter() {
    Filter filter;
    for (const char* name : kForbidden) {
        filter.forbid(name, EPERM);
    }
    for (const char* name : {"socket", "socketpair"}) {
        filter.forbid(name, EAFNOSUPPORT, firstArgument(SCMP_CMP_NE, AF_UNIX));
    }
    for (const auto flag : kNamespaces) {
        filter.forbid("clone", EPERM, firstArgument(SCMP_CMP_MASKED_EQ, flag, flag));
    }
    // Its flags are in memory, which a filter cannot read; the C library falls back to clone().
    filter.forbid("clone3", ENOSYS);
    // Without a namespace of processes, it binds the service to the host.
    filter.forbid("prctl", EPERM, firstArgument(SCMP_CMP_MASKED_EQ, kInt, PR_SET_PDEATHSIG));
    return filter;
}

}  // namespace

FileDescriptor makeCallFilter() {
    FileDescriptor file(memfd_create("orvalo-call-filter", MFD_CLOEXEC));
    if (!file) {
        throw NSError::posix(errno, "The filter for system calls");
    }
    // Never destroyed: a service may start while the process ends.
    static const auto& filter = *new const Filter(makeFilter());
    if (const int error = filter.write(file.get()); error != 0) {
        throw NSError::posix(-error, "The filter for system calls");
    }
    lseek(file.get(), 0, SEEK_SET);
    return file;
}

}  // namespace orvalo
