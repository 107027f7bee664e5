#include "tests/testing/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <system_error>

namespace orvalo::testing {

namespace {

constexpr int kTimeout = 60000;  // In ms, for one line on a busy machine

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (const auto& text : texts) {
        result.push_back(const_cast<char*>(text.c_str()));
    }
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> merged(const Program::Environment& additions) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (!additions.contains(text.substr(0, text.find('=')))) {
            result.push_back(text);
        }
    }
    for (const auto& [name, value] : additions) {
        std::string entry = name;
        entry.append("=").append(value);
        result.push_back(std::move(entry));
    }
    return result;
}

}  // namespace

Program::Program(const std::vector<std::string>& command, const Environment& environment)
    : error_(memfd_create("standard-error", MFD_CLOEXEC)) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    output_ = ends[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, error_, 2);
    const auto variables = merged(environment);
    const int error = posix_spawnp(&process_, command.front().c_str(), &actions, nullptr,
                                   pointers(command).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), command.front());
    }
}

Program::~Program() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    closeOutput();
    close(error_);
}

std::vector<std::string> Program::readUntil(const std::string& text) {
    std::vector<std::string> lines;
    while (true) {
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            lines.push_back(pending_.substr(0, end));
            pending_.erase(0, end + 1);
            if (!text.empty() && lines.back().find(text) != std::string::npos) {
                return lines;
            }
        }
        pollfd waiting{output_, POLLIN, 0};
        std::array<char, 4096> chunk{};
        if (poll(&waiting, 1, kTimeout) != 1) {
            return lines;
        }
        const auto count = read(output_, chunk.data(), chunk.size());
        if (count <= 0) {
            return lines;
        }
        pending_.append(chunk.data(), static_cast<std::size_t>(count));
    }
}

void Program::signal(int number) const {
    kill(process_, number);
}

void Program::closeOutput() {
    if (output_ >= 0) {
        close(output_);
        output_ = -1;
    }
}

int Program::wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

std::string Program::standardError() const {
    std::string result;
    std::array<char, 4096> chunk{};
    off_t offset = 0;
    for (ssize_t count = 0; (count = pread(error_, chunk.data(), chunk.size(), offset)) > 0;
         offset += count) {
        result.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return result;
}

}  // namespace orvalo::testing
