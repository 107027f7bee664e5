#pragma once

#include <sys/types.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace orvalo::testing {

/// The ID of the process's thread of that name; 0 without one.
inline pid_t threadOf(pid_t process, const std::string& name) {
    // The process may end while its threads are listed; a range-for would throw.
    std::error_code gone;
    std::filesystem::directory_iterator entry("/proc/" + std::to_string(process) + "/task", gone);
    for (; entry != std::filesystem::directory_iterator(); entry.increment(gone)) {
        std::ifstream file(entry->path() / "comm");
        if (std::string comm; std::getline(file, comm) && comm == name) {
            return std::stoi(entry->path().filename());
        }
    }
    return 0;
}

}  // namespace orvalo::testing
