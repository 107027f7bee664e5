#include "tests/platform/web/WebProcess.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace orvalo::testing {

namespace {

struct Process {
    std::string name;
    pid_t parent = 0;
};

std::map<pid_t, Process> allProcesses() {
    std::map<pid_t, Process> result;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto folder = entry.path().filename().string();
        if (folder.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::ifstream status(entry.path() / "status");
        Process process;
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("Name:\t")) {
                process.name = line.substr(6);
            } else if (line.starts_with("PPid:\t")) {
                process.parent = std::stoi(line.substr(6));
            }
        }
        result[std::stoi(folder)] = process;
    }
    return result;
}

}  // namespace

std::vector<pid_t> webProcesses() {
    const auto all = allProcesses();
    std::vector<pid_t> result;
    for (const auto& [number, process] : all) {
        // The kernel truncates names to 15 characters.
        if (process.name != "WebKitWebProces") {
            continue;
        }
        // The sandbox adds processes in between.
        auto ancestor = process.parent;
        while (ancestor != getpid() && all.contains(ancestor)) {
            ancestor = all.at(ancestor).parent;
        }
        if (ancestor == getpid()) {
            result.push_back(number);
        }
    }
    return result;
}

}  // namespace orvalo::testing
