#include "tests/testing/ServerProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace orvalo::testing {

namespace {

constexpr int kPatience = 10'000;  // milliseconds

}  // namespace

ServerProcess::ServerProcess(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    process_ = fork();
    if (process_ < 0) {
        throw std::system_error(errno, std::generic_category(), command.front());
    }
    if (process_ == 0) {
        // The program ends with the test and inherits none of its files.
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        for (const int standard : {0, 1, 2}) {
            dup2(null, standard);
        }
        close_range(3, ~0U, 0);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(null);
}

ServerProcess::~ServerProcess() {
    if (process_ > 0) {
        ::kill(process_, SIGCONT);
        ::kill(process_, SIGTERM);
        // A window manager may miss a signal that comes just before it waits for events.
        pollfd ended{.fd = static_cast<int>(syscall(SYS_pidfd_open, process_, 0)),
                     .events = POLLIN,
                     .revents = 0};
        if (poll(&ended, 1, kPatience) != 1) {
            ::kill(process_, SIGKILL);
        }
        close(ended.fd);
        waitpid(process_, nullptr, 0);
    }
}

bool isListening(const std::filesystem::path& socket) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.native().copy(std::data(address.sun_path), sizeof address.sun_path - 1);
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool result =
        connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(connection);
    return result;
}

void ServerProcess::signal(int number) const {
    ::kill(process_, number);
}

void ServerProcess::kill() {
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

}  // namespace orvalo::testing
