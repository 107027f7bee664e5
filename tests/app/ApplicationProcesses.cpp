#include "tests/app/ApplicationProcesses.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace orvalo::testing {

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

std::size_t RunningProcess::descriptorCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder() / "fd"), fs::directory_iterator()));
}

long RunningProcess::status(const std::string& field) const {
    std::ifstream file(folder() / "status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(field + ":")) {
            return std::stol(line.substr(field.size() + 1));
        }
    }
    return 0;
}

std::vector<RunningProcess> processesWithData(const std::string& folder) {
    // The whole entry of the environment.
    const auto mark = "XDG_DATA_HOME=" + folder + '\0';
    std::vector<RunningProcess> result;
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator("/proc", gone)) {
        const auto number = entry.path().filename().string();
        if (number.find_first_not_of("0123456789") == std::string::npos &&
            textOf(entry.path() / "environ").find(mark) != std::string::npos) {
            auto name = textOf(entry.path() / "comm");
            name.erase(name.find_last_not_of('\n') + 1);
            result.push_back({std::stoi(number), name});
        }
    }
    return result;
}

RunningProcess processNamed(const std::string& beginning,
                            const std::vector<RunningProcess>& processes) {
    const auto found = std::find_if(processes.begin(), processes.end(), [&](const auto& process) {
        return process.name.starts_with(beginning);
    });
    return found == processes.end() ? RunningProcess{} : *found;
}

}  // namespace orvalo::testing
