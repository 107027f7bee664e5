#include "tests/testing/XServer.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

namespace orvalo::testing {

namespace {

/// The descriptor to which Xvfb writes the number of its display.
constexpr int numberDescriptor = 3;
constexpr const char* numberDescriptorText = "3";

[[noreturn]] void becomeServer(const char* screen, int numbers) {
    // Xvfb ends with the test, however that ends, and inherits none of its descriptors.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {0, 1, 2}) {
        dup2(null, standard);
    }
    // dup2() onto itself would keep the close-on-exec flag.
    const int copy = fcntl(numbers, F_DUPFD, numberDescriptor + 1);
    dup2(copy, numberDescriptor);
    close_range(numberDescriptor + 1, ~0U, 0);
    execlp("Xvfb", "Xvfb", "-displayfd", numberDescriptorText, "-screen", "0", screen, "-nolisten",
           "tcp", "-noreset", nullptr);
    _exit(127);
}

/// The line that Xvfb writes when it is ready; incomplete when Xvfb ends before.
std::string readLine(int descriptor) {
    std::string line;
    for (char character = 0; read(descriptor, &character, 1) == 1 && character != '\n';) {
        line += character;
    }
    return line;
}

}  // namespace

XServer::XServer(const std::string& screen) {
    std::array<int, 2> numbers{};
    if (pipe2(numbers.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe2");
    }
    process_ = fork();
    if (process_ < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (process_ == 0) {
        becomeServer(screen.c_str(), numbers[1]);
    }
    close(numbers[1]);
    const auto number = readLine(numbers[0]);
    close(numbers[0]);
    if (number.empty()) {
        waitpid(process_, nullptr, 0);
        throw std::runtime_error("Xvfb did not start.");
    }
    display_ = ":" + number;
    g_setenv("DISPLAY", display_.c_str(), TRUE);
    g_setenv("GDK_BACKEND", "x11", TRUE);
    g_unsetenv("WAYLAND_DISPLAY");
    g_unsetenv("XAUTHORITY");
}

XServer::~XServer() {
    crash();
}

void XServer::crash() {
    if (process_ <= 0) {
        return;
    }
    // Xvfb would remove the file at its end, when it has closed the abstract socket that reserves
    // the number. By then the file may be that of the next server, started by another test.
    unlink(("/tmp/.X11-unix/X" + display_.substr(1)).c_str());
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

}  // namespace orvalo::testing
