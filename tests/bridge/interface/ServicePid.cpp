#include "tests/bridge/interface/ServicePid.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace orvalo::testing {

std::vector<pid_t> servicePids() {
    std::vector<pid_t> result;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(task.path() / "children");
        for (pid_t pid = 0; children >> pid;) {
            std::ifstream file("/proc/" + std::to_string(pid) + "/cmdline");
            std::string program;
            std::getline(file, program, '\0');
            if (program.ends_with("/effect-service")) {
                result.push_back(pid);
            }
        }
    }
    return result;
}

}  // namespace orvalo::testing
