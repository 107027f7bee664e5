#include "tests/programs/effect-service/ServiceProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <utility>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{30};
constexpr const char* kProgram = ORVALO_STAGE "/libexec/orvalo/effect-service";

}  // namespace

ServiceProgram::ServiceProgram(pid_t host) : errors_(memfd_create("service-errors", MFD_CLOEXEC)) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::runtime_error("There is no socket.");
    }
    channel_.emplace(FileDescriptor(ends[0]));
    const FileDescriptor theirs(ends[1]);
    std::string program(kProgram);
    std::string number = std::to_string(host);
    const std::array<char*, 3> arguments{program.data(), number.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, errors_.get(), 1);
    posix_spawn_file_actions_adddup2(&actions, errors_.get(), 2);
    posix_spawn_file_actions_adddup2(&actions, theirs.get(), 3);
    posix_spawn_file_actions_addclosefrom_np(&actions, 4);
    const int error =
        posix_spawn(&id_, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("The program does not start.");
    }
}

ServiceProgram::~ServiceProgram() {
    if (!status_) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

void ServiceProgram::send(const bridge::HostMessage& message, int passed) {
    sendBytes(bridge::encode(message), passed);
}

void ServiceProgram::sendBytes(std::vector<std::byte> bytes, int passed) {
    channel_->send(std::move(bytes), passed);
}

std::optional<bridge::ServiceMessage> ServiceProgram::receive() {
    const auto deadline = steady_clock::now() + kPatience;
    while (waiting_.empty() && steady_clock::now() < deadline) {
        const auto events = static_cast<short>(channel_->isWaiting() ? POLLIN | POLLOUT : POLLIN);
        pollfd socket{channel_->descriptor(), events, 0};
        poll(&socket, 1, 1000);
        channel_->flush();
        const auto result = channel_->receive([this](std::uint32_t type, auto bytes) {
            const auto message = bridge::decodeServiceMessage(type, bytes);
            if (message) {
                waiting_.push_back(*message);
            }
            return message.has_value();
        });
        if (result != MessageChannel::Result::waiting && waiting_.empty()) {
            return std::nullopt;
        }
    }
    if (waiting_.empty()) {
        return std::nullopt;
    }
    auto message = std::move(waiting_.front());
    waiting_.erase(waiting_.begin());
    return message;
}

bridge::ServiceMessage ServiceProgram::next() {
    auto message = receive();
    if (!message) {
        throw std::runtime_error("The service says nothing more. Its errors: " + standardError());
    }
    return *message;
}

std::string ServiceProgram::answer(std::uint32_t number) {
    const auto done = await<bridge::Done>();
    if (done.number != number) {
        throw std::runtime_error("The service answers another request.");
    }
    return done.error;
}

bool ServiceProgram::hasEnded() {
    int status = 0;
    if (!status_ && waitpid(id_, &status, WNOHANG) == id_) {
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return status_.has_value();
}

int ServiceProgram::waitForEnd() {
    if (!pollUntil([this] { return hasEnded(); }, kPatience)) {
        throw std::runtime_error("The service does not end.");
    }
    return *status_;
}

std::string ServiceProgram::standardError() const {
    struct stat status {};
    fstat(errors_.get(), &status);
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const auto count = pread(errors_.get(), text.data(), text.size(), 0);
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return text;
}

}  // namespace orvalo::testing
