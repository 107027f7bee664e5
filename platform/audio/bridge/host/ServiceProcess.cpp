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
#include <vector>

#include "platform/audio/bridge/host/ServiceEnvironment.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr int kServiceSocket = 3;
// A killed process that does not go within this time hangs inside of the system.
constexpr std::chrono::milliseconds kLastWait{5000};

/// What a new process finds: actions on descriptors, and attributes.
class Spawning {
  public:
    Spawning() {
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
    ~Spawning() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    Spawning(const Spawning&) = delete;
    Spawning& operator=(const Spawning&) = delete;

    void setDescriptors(int output, int socket) {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, socket, kServiceSocket);
        posix_spawn_file_actions_addclosefrom_np(&actions_, kServiceSocket + 1);
    }

    pid_t spawn(const std::filesystem::path& program) const {
        std::vector<std::string> environment = serviceEnvironment();
        std::vector<char*> variables;
        variables.reserve(environment.size() + 1);
        for (auto& variable : environment) {
            variables.push_back(variable.data());
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

/// The same open file at a number that no standard descriptor has, so that giving these to the
/// process never overwrites one that is still to be given.
FileDescriptor moved(int descriptor) {
    constexpr int kBeyond = 10;
    FileDescriptor original(descriptor);
    FileDescriptor copy(fcntl(descriptor, F_DUPFD_CLOEXEC, kBeyond));
    if (!copy) {
        throw NSError::posix(errno, "The process of an effect");
    }
    return copy;
}

/// The two ends of a way between processes.
struct Ends {
    FileDescriptor ours;
    FileDescriptor theirs;
};

/// Both are beyond the standard descriptors.
template <typename Make>
Ends makeEnds(const Make& make) {
    std::array<int, 2> ends{-1, -1};
    if (make(ends.data()) != 0) {
        throw NSError::posix(errno, "The process of an effect");
    }
    FileDescriptor second(ends[1]);
    auto first = moved(ends[0]);
    return {std::move(first), moved(second.release())};
}

}  // namespace

ServiceProcess::ServiceProcess(const std::filesystem::path& program) {
    auto socket = makeEnds(
        [](int* ends) { return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends); });
    auto output = makeEnds([](int* ends) { return pipe2(ends, O_CLOEXEC); });
    // What the process writes must not make it wait for this one, nor this one for it.
    fcntl(output.ours.get(), F_SETFL, O_NONBLOCK);
    Spawning spawning;
    spawning.setDescriptors(output.theirs.get(), socket.theirs.get());
    id_ = spawning.spawn(program);
    process_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, id_, 0)));
    if (!process_) {
        const int error = errno;
        kill(-id_, SIGKILL);
        waitpid(id_, nullptr, 0);
        throw NSError::posix(error, "The process of an effect");
    }
    socket_ = std::move(socket.ours);
    output_ = std::move(output.ours);
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
    // Its number stands for it until its end has been taken.
    kill(-id_, SIGKILL);
    // Also when it has found a way out of its group.
    syscall(SYS_pidfd_send_signal, process_.get(), SIGKILL, nullptr, 0);
    siginfo_t info{};
    if (!endsWithin(kLastWait)) {
        g_warning("The process %d of an effect cannot be ended.", static_cast<int>(id_));
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
