#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A running process, from /proc.
struct RunningProcess {
    int number = 0;
    std::string name;

    std::filesystem::path folder() const { return "/proc/" + std::to_string(number); }
    std::size_t descriptorCount() const;
    /// A number of /proc/<number>/status such as VmRSS, in KiB; 0 when it is missing.
    long status(const std::string& field) const;
};

/// The processes with that data folder in their environment: an application of the tests and its
/// children.
std::vector<RunningProcess> processesWithData(const std::string& folder);
/// The first process whose name begins with `beginning`; number 0 without one.
RunningProcess processNamed(const std::string& beginning,
                            const std::vector<RunningProcess>& processes);

}  // namespace orvalo::testing
