#include "tests/output/ServerProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <system_error>

namespace orvalo::testing {

ServerProcess::ServerProcess(const std::vector<std::string>& command) : process_(-1) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    const int error =
        posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), command.front());
    }
}

ServerProcess::~ServerProcess() {
    if (process_ > 0) {
        ::kill(process_, SIGCONT);
        ::kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
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
