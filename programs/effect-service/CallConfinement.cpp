#include "programs/effect-service/CallConfinement.h"

#include <glib.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "platform/foundation/GLibPointer.h"

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
        // The host kills the process group.
        "setpgid", "setsid",
        // Keys and namespaces.
        "add_key", "keyctl", "request_key", "setns", "unshare",
        // It creates sockets without the system call that the filter checks.
        "io_uring_setup"
};

int forbid(scmp_filter_ctx filter, const char* name) {
    const int number = seccomp_syscall_resolve_name(name);
    // The library or the architecture may lack the call.
    return number == __NR_SCMP_ERROR ? 0
                                     : seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), number, 0);
}

int load(scmp_filter_ctx filter) {
    int error = seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1);
    if (error == 0) {
        error = seccomp_rule_add(filter, SCMP_ACT_ERRNO(EAFNOSUPPORT), SCMP_SYS(socket), 1,
                                 SCMP_A0(SCMP_CMP_NE, AF_UNIX));
    }
    if (error == 0) {
        // bindToHost() must hold.
        error = seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(prctl), 1,
                                 SCMP_A0(SCMP_CMP_EQ, PR_SET_PDEATHSIG));
    }
    for (const char* name : kForbidden) {
        error = error == 0 ? forbid(filter, name) : error;
    }
    return error == 0 ? seccomp_load(filter) : error;
}

}  // namespace

void confineCalls() {
    const std::unique_ptr<void, Release<seccomp_release>> filter(seccomp_init(SCMP_ACT_ALLOW));
    const int error = filter == nullptr ? -ENOMEM : load(filter.get());
    if (error != 0) {
        g_message(
            "The kernel refuses the filter for system calls (%s); the effect runs without it.",
            g_strerror(-error));
    }
}

}  // namespace orvalo
