#include "tests/platform/plugin-ui/bridge/EffectServices.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

std::vector<pid_t> servicePids() {
    std::vector<pid_t> result;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(task.path() / "children");
        for (pid_t pid = 0; children >> pid;) {
            std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
            std::string program;
            std::getline(file, program);
            if (program == "effect-service") {
                result.push_back(pid);
            }
        }
    }
    return result;
}

bool killService() {
    std::vector<pid_t> pids;
    return pollUntil([&pids] {
               pids = servicePids();
               return pids.size() == 1;
           }) &&
           kill(pids.front(), SIGKILL) == 0;
}

}  // namespace orvalo::testing
