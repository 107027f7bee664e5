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
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

#include "platform/audio/bridge/host/CallFilter.h"
#include "platform/audio/bridge/host/PlainText.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

// Of a new process.
constexpr int kServiceSocket = 3;
constexpr int kCallFilter = 4;
constexpr int kStatus = 5;
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

    /// status: below 0 for none.
    void setDescriptors(int output, int socket, int filter, int status) {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, socket, kServiceSocket);
        posix_spawn_file_actions_adddup2(&actions_, filter, kCallFilter);
        int next = kCallFilter + 1;
        if (status >= 0) {
            posix_spawn_file_actions_adddup2(&actions_, status, kStatus);
            next = kStatus + 1;
        }
        posix_spawn_file_actions_addclosefrom_np(&actions_, next);
    }

    pid_t spawn(std::vector<std::string>& command) const {
        std::vector<char*> variables;
        for (char** variable = environ; *variable != nullptr; ++variable) {
            const std::string_view text(*variable);
            if (isInherited(text.substr(0, text.find('=')))) {
                variables.push_back(*variable);
            }
        }
        variables.push_back(nullptr);
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (auto& argument : command) {
            arguments.push_back(argument.data());
        }
        arguments.push_back(nullptr);
        pid_t id = -1;
        const int error = posix_spawnp(&id, arguments.front(), &actions_, &attributes_,
                                       arguments.data(), variables.data());
        if (error != 0) {
            throw NSError::posix(error, "The program " + command.front());
        }
        return id;
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Moves a descriptor above those that setDescriptors() assigns, which would overwrite it.
FileDescriptor movedUp(const FileDescriptor& descriptor) {
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
    return {movedUp(first), movedUp(second)};
}

Ends makePipe() {
    return makeEnds([](int* ends) { return pipe2(ends, O_CLOEXEC); });
}

std::string readAll(int pipe) {
    std::string text;
    std::array<char, 1024> piece{};
    for (ssize_t count = 0; (count = read(pipe, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

/// Up to the end of the first line.
std::string readLine(int pipe) {
    std::string text;
    for (char letter = 0; letter != '\n' && read(pipe, &letter, 1) == 1;) {
        text += letter;
    }
    return text;
}

/// The member "child-pid" of the object that bubblewrap writes first; -1 without one.
pid_t childIn(const std::string& status) {
    constexpr std::string_view kName = "\"child-pid\": ";
    const auto place = status.find(kName);
    return place == std::string::npos ? -1
                                      : static_cast<pid_t>(std::strtol(
                                            status.c_str() + place + kName.size(), nullptr, 10));
}

FileDescriptor openProcess(pid_t process) {
    return FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

void add(ServiceProcess::Use& use, const std::filesystem::path& process) {
    std::ifstream file(process / "stat");
    std::string text;
    std::getline(file, text, '\0');
    // The name, in brackets, may contain anything. The state follows it as field 3.
    constexpr int kThreads = 20;
    constexpr int kResident = 24;
    std::istringstream fields(text.substr(std::min(text.rfind(") "), text.size() - 1) + 1));
    std::string field;
    for (int number = 3; number <= kResident && fields >> field; ++number) {
        const auto value = std::strtoull(field.c_str(), nullptr, 10);
        if (number == kThreads) {
            use.threads += static_cast<unsigned>(value);
        } else if (number == kResident) {
            use.memory += value * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
        }
    }
}

std::string signalText(int signal) {
    return "was killed by signal " + std::to_string(signal) + " (" + g_strsignal(signal) + ")";
}

std::atomic<bool> confinementWorks{false};
std::atomic<bool> confinementFails{false};

void giveUpConfinement(const std::string& reason) {
    if (!confinementFails.exchange(true)) {
        g_warning(
            "Effects are not confined, because bubblewrap does not work here (%s). They can read "
            "and change the user's files, fill the disk, see, signal and slow down other "
            "processes, use the user's session, sound and input devices, start any number of "
            "processes and leave them behind, and act as root where the program does; only the "
            "effect's own process is watched for its memory.",
            reason.c_str());
    }
}

/// Whether to start services with bubblewrap.
bool confines() {
    static const bool isInstalled = [] {
        const GText program(g_find_program_in_path("bwrap"));
        if (program == nullptr) {
            giveUpConfinement("it is not installed");
        }
        return program != nullptr;
    }();
    return isInstalled && !confinementFails;
}

}  // namespace

ServiceProcess::ServiceProcess(const std::filesystem::path& program, const EffectPlaces& places) {
    // Otherwise bubblewrap would report it.
    if (access(program.c_str(), X_OK) != 0) {
        throw NSError::posix(errno, "The program " + program.string());
    }
    if (confines()) {
        start(confinedCommand(program, places), true);
    } else {
        start({program}, false);
    }
}

void ServiceProcess::start(std::vector<std::string> command, bool isConfined) {
    auto socket = makeEnds(
        [](int* ends) { return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends); });
    auto output = makePipe();
    auto status = isConfined ? makePipe() : Ends{};
    const auto filter = movedUp(makeCallFilter());
    fcntl(output.host.get(), F_SETFL, O_NONBLOCK);
    Spawner spawner;
    spawner.setDescriptors(output.service.get(), socket.service.get(), filter.get(),
                           status.service.get());
    // The service's parent, and the filter where bubblewrap does not load it.
    if (isConfined) {
        command.insert(command.begin() + 1, {"--seccomp", std::to_string(kCallFilter),
                                             "--json-status-fd", std::to_string(kStatus)});
        command.emplace_back("1");
    } else {
        command.insert(command.end(), {std::to_string(getpid()), std::to_string(kCallFilter)});
    }
    id_ = spawner.spawn(command);
    process_ = openProcess(id_);
    if (!process_) {
        const int error = errno;
        kill(-id_, SIGKILL);
        waitpid(id_, nullptr, 0);
        throw NSError::posix(error, "The process of an effect service");
    }
    socket_ = std::move(socket.host);
    output_ = std::move(output.host);
    if (isConfined) {
        status.service = FileDescriptor();
        status_ = std::move(status.host);
        first_ = childIn(readLine(status_.get()));
        fcntl(status_.get(), F_SETFL, O_NONBLOCK);
        firstProcess_ = first_ > 0 ? openProcess(first_) : FileDescriptor();
    }
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

ServiceProcess::Use ServiceProcess::use() const {
    Use use;
    if (!firstProcess_) {
        add(use, "/proc/" + std::to_string(id_));
        return use;
    }
    // The namespace's own list of its processes. Until bubblewrap has mounted it, the place leads
    // to the host's list, in which the host has an entry.
    // Opened once: the next look might find another list.
    const auto place = "/proc/" + std::to_string(first_) + "/root/proc";
    const FileDescriptor list(open(place.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::error_code error;
    const auto folder = "/proc/self/fd/" + std::to_string(list.get());
    if (!list || std::filesystem::exists(folder + "/self", error)) {
        return use;
    }
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (g_ascii_isdigit(entry->path().filename().c_str()[0])) {
            add(use, entry->path());
        }
    }
    return use;
}

void ServiceProcess::noteAnswer() const {
    if (status_) {
        confinementWorks = true;
    }
}

std::string ServiceProcess::end() {
    if (id_ < 0) {
        return "has ended";
    }
    // The numbers are not reused before waitid().
    if (firstProcess_) {
        // Process 1 ends when all others of its namespace have ended; then bubblewrap ends, which
        // might be stopped.
        syscall(SYS_pidfd_send_signal, firstProcess_.get(), SIGKILL, nullptr, 0);
        kill(id_, SIGCONT);
    } else {
        kill(-id_, SIGKILL);
    }
    siginfo_t info{};
    if (!endsWithin(kKillTimeout)) {
        g_warning("The effect service with process ID %d cannot be killed; it is left behind.",
                  static_cast<int>(id_));
    } else if (waitid(P_PIDFD, static_cast<id_t>(process_.get()), &info, WEXITED | WNOHANG) != 0) {
        info = {};
    }
    id_ = -1;
    // Of a service that never answered. bubblewrap reports the end of a program only.
    if (status_ && readAll(status_.get()).find("\"exit-code\"") != std::string::npos) {
        confinementWorks = true;
    }
    const bool isSignal = info.si_code == CLD_KILLED || info.si_code == CLD_DUMPED;
    if (isSignal) {
        return signalText(info.si_status);
    }
    if (info.si_code != CLD_EXITED) {
        return "has ended";
    }
    // bubblewrap ends as a shell does after a signal.
    constexpr int kSignal = 128;
    return first_ > 0 && info.si_status > kSignal
               ? signalText(info.si_status - kSignal)
               : "ended with status " + std::to_string(info.si_status);
}

bool ServiceProcess::failedToConfine() const {
    if (!status_ || confinementWorks) {
        return false;
    }
    // A program that any machine has tells whether it failed because of the effect's files.
    ServiceProcess trial;
    trial.start(confinedCommand("/bin/true", {}), true);
    if (trial.endsWithin(kKillTimeout) && trial.end() == "ended with status 0") {
        return false;
    }
    giveUpConfinement(plainText(readAll(trial.output_.get())));
    return true;
}

}  // namespace orvalo
