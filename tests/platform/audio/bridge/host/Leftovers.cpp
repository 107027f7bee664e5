#include "tests/platform/audio/bridge/host/Leftovers.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace orvalo::testing {

namespace {

namespace fs = std::filesystem;

std::size_t countEntries(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

/// The fields of /proc/<process>/stat behind the name, which may contain any character.
std::istringstream status(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    // Empty when the process has ended since it was listed.
    std::getline(file, text, '\0');
    const auto end = text.rfind(") ");
    return std::istringstream(end == std::string::npos ? "" : text.substr(end + 2));
}

}  // namespace

Leftovers Leftovers::now() {
    // The thread sanitizer starts a background thread with the first thread of a program.
    static const bool hasStartedOne = (std::thread([] {}).join(), true);
    static_cast<void>(hasStartedOne);
    Leftovers result;
    result.descriptors = countEntries("/proc/self/fd");
    result.threads = countEntries("/proc/self/task");
    result.children = testing::children();
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        result.sharedMaps += line.find("orvalo-effect-audio") != std::string::npos ? 1 : 0;
    }
    return result;
}

Leftovers Leftovers::settled(const Leftovers& wanted) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    auto result = now();
    while (result != wanted && std::chrono::steady_clock::now() < limit) {
        std::this_thread::yield();
        result = now();
    }
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Leftovers& leftovers) {
    stream << leftovers.descriptors << " descriptors, " << leftovers.sharedMaps << " maps, "
           << leftovers.threads << " threads, children:";
    for (const auto child : leftovers.children) {
        stream << " " << child;
    }
    return stream;
}

namespace {

std::set<pid_t> childrenOf(pid_t process) {
    std::set<pid_t> result;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        auto fields = status(name);
        char state = '\0';
        pid_t parent = 0;
        if (fields >> state >> parent && parent == process) {
            result.insert(static_cast<pid_t>(std::stol(name)));
        }
    }
    return result;
}

bool isBubblewrap(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    return std::getline(file, name) && name == "bwrap";
}

pid_t only(const std::set<pid_t>& processes, const std::string& what) {
    if (processes.size() != 1) {
        throw std::runtime_error(std::to_string(processes.size()) + " " + what + " instead of one");
    }
    return *processes.begin();
}

}  // namespace

std::set<pid_t> children() {
    return childrenOf(getpid());
}

std::set<pid_t> services() {
    std::set<pid_t> result;
    auto candidates = children();
    while (!candidates.empty()) {
        const auto process = candidates.extract(candidates.begin()).value();
        if (isBubblewrap(process)) {
            candidates.merge(childrenOf(process));
        } else {
            result.insert(process);
        }
    }
    return result;
}

pid_t onlyChild() {
    return only(children(), "child processes");
}

pid_t onlyService() {
    return only(services(), "services");
}

std::set<pid_t> descendants() {
    std::set<pid_t> result;
    auto candidates = children();
    while (!candidates.empty()) {
        const auto process = candidates.extract(candidates.begin()).value();
        candidates.merge(childrenOf(process));
        result.insert(process);
    }
    return result;
}

bool isAlive(pid_t process) {
    auto fields = status(std::to_string(process));
    char state = '\0';
    return fields >> state && state != 'Z' && state != 'X';
}

}  // namespace orvalo::testing
