#include "platform/audio/bridge/host/ServiceProcess.h"

#include <fcntl.h>
#include <glib.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <string_view>
#include <vector>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr int kServiceSocket = 3;
// A killed process that still exists after this time hangs in a system call.
constexpr std::chrono::milliseconds kKillTimeout{5000};

/// Whether a service gets the environment variable: where plug-ins and the user's files are, the
/// display, the language, and the settings of sanitizers and libraries.
bool isInherited(std::string_view name) {
    constexpr std::array<std::string_view, 10> kNames{
        "PATH",    "HOME",       "LANG",     "LANGUAGE",        "TMPDIR",
        "DISPLAY", "XAUTHORITY", "LV2_PATH", "LD_LIBRARY_PATH", "G_MESSAGES_DEBUG"};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end() ||
           name.starts_with("LC_") || name.starts_with("XDG_") || name.ends_with("SAN_OPTIONS");
}

/// The attributes and descriptors of a new process: no blocked or ignored signals, and a new
/// process group.
class Spawner {
  public:
    Spawner() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Spawner() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    Spawner(const Spawner&) = delete;
    Spawner& operator=(const Spawner&) = delete;

    void setDescriptors(int output, int socket) {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, socket, kServiceSocket);
        posix_spawn_file_actions_addclosefrom_np(&actions_, kServiceSocket + 1);
    }

    pid_t spawn(const std::filesystem::path& program) const {
        std::vector<char*> variables;
        for (char** variable = environ; *variable != nullptr; ++variable) {
            const std::string_view text(*variable);
            if (isInherited(text.substr(0, text.find('=')))) {
                variables.push_back(*variable);
            }
        }
        variables.push_back(nullptr);
        std::string name = program.string();
        std::string host = std::to_string(getpid());
        const std::array<char*, 3> arguments{name.data(), host.data(), nullptr};
        pid_t id = -1;
        const int error = posix_spawn(&id, program.c_str(), &actions_, &attributes_,
                                      arguments.data(), variables.data());
        if (error != 0) {
            throw NSError::posix(error, "The program " + program.string());
        }
        return id;
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Moves a descriptor above those that setDescriptors() assigns, which would overwrite it.
FileDescriptor movedUp(FileDescriptor descriptor) {
    constexpr int kLowest = 10;
    FileDescriptor copy(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, kLowest));
    if (!copy) {
        throw NSError::posix(errno, "A descriptor of an effect service");
    }
    return copy;
}

/// The host's and the service's end of a socket or a pipe.
struct Ends {
    FileDescriptor host;
    FileDescriptor service;
};

template <typename Make>
Ends makeEnds(const Make& make) {
    std::array<int, 2> ends{-1, -1};
    if (make(ends.data()) != 0) {
        throw NSError::posix(errno, "The socket or pipe of an effect service");
    }
    FileDescriptor first(ends[0]);
    FileDescriptor second(ends[1]);
    return {movedUp(std::move(first)), movedUp(std::move(second))};
}

}  // namespace

ServiceProcess::ServiceProcess(const std::filesystem::path& program) {
    auto socket = makeEnds(
        [](int* ends) { return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends); });
    auto output = makeEnds([](int* ends) { return pipe2(ends, O_CLOEXEC); });
    fcntl(output.host.get(), F_SETFL, O_NONBLOCK);
    Spawner spawner;
    spawner.setDescriptors(output.service.get(), socket.service.get());
    id_ = spawner.spawn(program);
    process_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
    if (!process_) {
        const int error = errno;
        kill(-id_, SIGKILL);
        waitpid(id_, nullptr, 0);
        throw NSError::posix(error, "The process of an effect service");
    }
    socket_ = std::move(socket.host);
    output_ = std::move(output.host);
}

ServiceProcess::~ServiceProcess() {
    end();
}

bool ServiceProcess::endsWithin(std::chrono::milliseconds limit) const {
    const auto until = std::chrono::steady_clock::now() + limit;
    pollfd process{process_.get(), POLLIN, 0};
    int count = -1;
    do {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(std::max<std::chrono::nanoseconds>(
                until - std::chrono::steady_clock::now(), std::chrono::nanoseconds(0)));
        count = poll(&process, 1, static_cast<int>(left.count()));
    } while (count < 0 && errno == EINTR);
    return count == 1;
}

std::uint64_t ServiceProcess::residentMemory() const {
    std::ifstream file("/proc/" + std::to_string(id_) + "/statm");
    std::uint64_t total = 0;
    std::uint64_t resident = 0;
    return file >> total >> resident ? resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE))
                                     : 0;
}

std::string ServiceProcess::end() {
    if (id_ < 0) {
        return "has ended";
    }
    // The number is not reused before waitid().
    kill(-id_, SIGKILL);
    // The process itself may have left its group.
    syscall(SYS_pidfd_send_signal, process_.get(), SIGKILL, nullptr, 0);
    siginfo_t info{};
    if (!endsWithin(kKillTimeout)) {
        g_warning("The effect service with process ID %d cannot be killed; it is left behind.",
                  static_cast<int>(id_));
    } else if (waitid(P_PIDFD, static_cast<id_t>(process_.get()), &info, WEXITED | WNOHANG) != 0) {
        info = {};
    }
    id_ = -1;
    if (info.si_code == CLD_EXITED) {
        return "ended with status " + std::to_string(info.si_status);
    }
    if (info.si_code == CLD_KILLED || info.si_code == CLD_DUMPED) {
        return "was killed by signal " + std::to_string(info.si_status) + " (" +
               g_strsignal(info.si_status) + ")";
    }
    return "has ended";
}

}  // namespace orvalo
