#include "tests/platform/plugin-ui/bridge/EffectServices.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

/// Adds the services among the process's children; bubblewrap's processes are in between.
void addServices(const std::string& process, std::vector<pid_t>& services) {
    std::error_code gone;
    for (const auto& task :
         std::filesystem::directory_iterator("/proc/" + process + "/task", gone)) {
        std::ifstream children(task.path() / "children");
        for (pid_t pid = 0; children >> pid;) {
            const auto child = std::to_string(pid);
            std::ifstream file("/proc/" + child + "/comm");
            std::string program;
            std::getline(file, program);
            if (program == "effect-service") {
                services.push_back(pid);
            } else {
                addServices(child, services);
            }
        }
    }
}

}  // namespace

std::vector<pid_t> servicePids() {
    std::vector<pid_t> result;
    addServices("self", result);
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
