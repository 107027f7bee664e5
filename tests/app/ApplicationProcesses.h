#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A running process, as the system's own files tell of it.
struct RunningProcess {
    int number = 0;
    std::string name;

    std::filesystem::path folder() const { return "/proc/" + std::to_string(number); }
    std::size_t descriptorCount() const;
    /// A number of its "status", such as VmRSS, which is in KiB; 0 when there is none.
    long status(const std::string& field) const;
};

/// The processes that were started with that folder for data: an application of the tests and all
/// that it has started.
std::vector<RunningProcess> processesWithData(const std::string& folder);
/// The first of them whose name begins so; one of number 0 when there is none.
RunningProcess processNamed(const std::string& beginning,
                            const std::vector<RunningProcess>& processes);

}  // namespace orvalo::testing
