#include "tests/effect/ui/XServer.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace orvalo::testing {

XServer::XServer() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    process_ = fork();
    if (process_ == 0) {
        const int quiet = open("/dev/null", O_RDWR);
        dup2(quiet, STDOUT_FILENO);
        dup2(quiet, STDERR_FILENO);
        // Xvfb writes its display number to the only descriptor that stays open.
        constexpr int numberEnd = 3;
        dup2(ends[1], numberEnd);
        if (ends[1] == numberEnd) {
            fcntl(numberEnd, F_SETFD, 0);
        }
        execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1400x1100x24", "-nolisten",
               "tcp", "-noreset", nullptr);
        _exit(1);
    }
    close(ends[1]);
    std::string number;
    char c = 0;
    while (read(ends[0], &c, 1) == 1 && c != '\n') {
        number += c;
    }
    close(ends[0]);
    if (number.empty()) {
        stop();
        throw std::runtime_error("Xvfb does not start");
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the program's only thread
    setenv("DISPLAY", (":" + number).c_str(), 1);
}

void XServer::stop() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }
}

}  // namespace orvalo::testing
