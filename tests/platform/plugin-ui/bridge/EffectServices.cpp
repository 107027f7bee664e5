#include "tests/platform/plugin-ui/bridge/EffectServices.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

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
    const auto pids = servicePids();
    return pids.size() == 1 && kill(pids.front(), SIGKILL) == 0;
}

BridgeLimits unhurriedLimits() {
    BridgeLimits limits;
    limits.hang = std::chrono::seconds(15);
    limits.request = std::chrono::seconds(60);
    limits.pluginUI = std::chrono::seconds(60);
    limits.offlineWait = std::chrono::seconds(60);
    return limits;
}

}  // namespace orvalo::testing
