#include "tests/platform/foundation/defaults/Worker.h"

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "platform/foundation/ExecutablePath.h"

namespace orvalo::testing {

namespace {

/// Unlike a pipe, it raises no signal when the other end is closed.
std::array<int, 2> newChannel() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    return ends;
}

}  // namespace

Worker::Worker(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{(executablePath().parent_path() / "defaults_worker").string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (auto& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    const auto input = newChannel();
    const auto output = newChannel();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    const int failure =
        posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), words[0]);
    }
}

Worker::~Worker() {
    close(input_);
    close(output_);
    if (process_ > 0) {
        signal(SIGKILL);
        wait();
    }
}

void Worker::say(const std::string& line) const {
    const auto text = line + "\n";
    static_cast<void>(send(input_, text.data(), text.size(), MSG_NOSIGNAL));
}

std::string Worker::ask(const std::string& line) {
    say(line);
    return readLine();
}

std::string Worker::readLine() {
    for (;;) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            auto line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return line;
        }
        std::array<char, 4096> buffer{};
        const auto count = read(output_, buffer.data(), buffer.size());
        if (count <= 0) {
            return {};
        }
        pending_.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void Worker::signal(int number) const {
    kill(process_, number);
}

bool Worker::waitForStop() const {
    int status = 0;
    return waitpid(process_, &status, WUNTRACED) == process_ && WIFSTOPPED(status);
}

int Worker::wait() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace orvalo::testing
