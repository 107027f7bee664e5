#include "bench/measuring/Child.h"

#include <fcntl.h>
#include <linux/perf_event.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

#include "bench/measuring/Clocks.h"

namespace orvalo::bench {

namespace {

constexpr int kNoProgram = 127;
constexpr int kMicrosecondsBetweenLooks = 1000;
constexpr int kLooksBeforeKilling = 5000;

struct Pipe {
    int readEnd;
    int writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    return {ends[0], ends[1]};
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (auto& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> mergedEnvironment(const Environment& additions) {
    Environment merged;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        const auto equals = text.find('=');
        merged[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto& [name, value] : additions) {
        merged[name] = value;
    }
    std::vector<std::string> result;
    result.reserve(merged.size());
    for (const auto& [name, value] : merged) {
        result.push_back(std::string(name).append("=").append(value));
    }
    return result;
}

/// Counts the processor time of the programs that this thread starts from now on, with all that
/// they start; below 0 where the system does not allow that. wait4() misses processes that are
/// killed with their namespace, such as the service of an effect.
int openClock() {
    perf_event_attr clock{};
    clock.type = PERF_TYPE_SOFTWARE;
    clock.size = sizeof(clock);
    clock.config = PERF_COUNT_SW_TASK_CLOCK;
    clock.disabled = 1;
    clock.enable_on_exec = 1;
    clock.inherit = 1;
    // Ordinary users may count nothing else; the clock runs in the kernel, too.
    clock.exclude_kernel = 1;
    clock.exclude_hv = 1;
    return static_cast<int>(syscall(SYS_perf_event_open, &clock, 0, -1, -1, PERF_FLAG_FD_CLOEXEC));
}

}  // namespace

Child::Child(const Command& command, const Environment& environment, Output output)
    : name_(command.front()) {
    auto words = command;
    auto variables = mergedEnvironment(environment);
    const auto arguments = pointers(words);
    const auto environmentOfChild = pointers(variables);
    const auto input = makePipe();
    const auto results = makePipe();
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto parent = getpid();
    clock_ = openClock();
    beganAt_ = monotonicNanoseconds();
    process_ = fork();
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(kNoProgram);
        }
        dup2(input.readEnd, STDIN_FILENO);
        dup2(output == Output::read ? results.writeEnd : nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        execvpe(arguments[0], arguments.data(), environmentOfChild.data());
        _exit(kNoProgram);
    }
    const int failure = errno;
    close(nowhere);
    close(input.readEnd);
    close(results.writeEnd);
    input_ = input.writeEnd;
    output_ = results.readEnd;
    if (process_ < 0) {
        close(input_);
        close(output_);
        close(clock_);
        throw std::system_error(failure, std::generic_category(), "fork");
    }
}

Child::~Child() {
    end();
    close(input_);
    close(output_);
    close(clock_);
}

std::optional<std::int64_t> Child::awaitLine(const std::string& line, double seconds) const {
    const auto deadline = beganAt_ + static_cast<std::int64_t>(seconds * 1e9);
    const auto wanted = "\n" + line + "\n";
    std::string text = "\n";
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto left = (deadline - monotonicNanoseconds()) / 1'000'000;
        pollfd look{output_, POLLIN, 0};
        if (left <= 0 || poll(&look, 1, static_cast<int>(left)) <= 0) {
            return std::nullopt;
        }
        const auto count = read(output_, buffer.data(), buffer.size());
        const auto now = monotonicNanoseconds();
        if (count <= 0) {
            return std::nullopt;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
        if (text.find(wanted) != std::string::npos) {
            return now;
        }
    }
}

void Child::awaitSuccess() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(
            name_ + (WIFEXITED(status)
                         ? " ended with status " + std::to_string(WEXITSTATUS(status))
                         : " was ended by signal " + std::to_string(WTERMSIG(status))));
    }
}

double Child::awaitProcessorSeconds() {
    awaitSuccess();
    std::uint64_t nanoseconds = 0;
    if (read(clock_, &nanoseconds, sizeof(nanoseconds)) != sizeof(nanoseconds)) {
        throw std::system_error(errno, std::generic_category(), "the counter of processor time");
    }
    return inSeconds(static_cast<std::int64_t>(nanoseconds));
}

void Child::end() {
    if (process_ < 0) {
        return;
    }
    kill(process_, SIGTERM);
    for (int look = 0; waitpid(process_, nullptr, WNOHANG) == 0; ++look) {
        if (look == kLooksBeforeKilling) {
            kill(process_, SIGKILL);
        }
        usleep(kMicrosecondsBetweenLooks);
    }
    process_ = -1;
}

}  // namespace orvalo::bench
