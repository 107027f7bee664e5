#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdlib>

#include "tests/platform/foundation/defaults/SuiteFile.h"

// The thread sanitizer asks the system whenever it pleases.
#ifndef __SANITIZE_THREAD__

namespace orvalo::testing {
namespace {

/// From now on, any system call ends the process with SIGSYS, but for its own end and for locks
/// that threads wait for.
bool forbidSystemCalls() {
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 2, 0),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_futex, 1, 0),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{filter.size(), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

void readWithoutTheSystem(const std::string& name, bool isWrittenBetween) {
    const auto settings = UserDefaults::suiteName(name);
    const auto read = [&] {
        return settings->integer("key") + (settings->bool_("absent") ? 1 : 0);
    };
    auto sum = read();
    if (!forbidSystemCalls()) {
        _exit(EXIT_FAILURE);
    }
    for (int count = 0; count < 1000; ++count) {
        sum += read();
    }
    if (isWrittenBetween) {
        settings->set(2, "key");
    }
    // Before _exit(), the address sanitizer asks the system for more.
    syscall(SYS_exit_group, sum == 7007 ? EXIT_SUCCESS : EXIT_FAILURE);
}

class AReadOfWhatNobodyHasWritten : public SuiteFile {
  protected:
    AReadOfWhatNobodyHasWritten() { open()->set(7, "key"); }
};

TEST_F(AReadOfWhatNobodyHasWritten, asksTheSystemForNothing) {
    EXPECT_EXIT(readWithoutTheSystem(name_, false), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

// So the system calls are really forbidden.
TEST_F(AReadOfWhatNobodyHasWritten, doesWhatAWriteCannot) {
    EXPECT_EXIT(readWithoutTheSystem(name_, true), ::testing::KilledBySignal(SIGSYS), "");
}

}  // namespace
}  // namespace orvalo::testing

#endif
