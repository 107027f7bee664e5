#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "tests/programs/play/PlayFixture.h"

namespace orvalo::testing {

namespace {

/// The process and all that it has started.
std::vector<pid_t> family(pid_t process) {
    std::vector<pid_t> all{process};
    for (std::size_t index = 0; index < all.size(); ++index) {
        const auto folder = "/proc/" + std::to_string(all[index]) + "/task";
        std::error_code error;
        for (std::filesystem::directory_iterator task(folder, error), end; !error && task != end;
             task.increment(error)) {
            std::ifstream children(task->path() / "children");
            for (pid_t child = 0; children >> child;) {
                all.push_back(child);
            }
        }
    }
    return all;
}

/// The resident memory in KiB, of which each process has its share; 0 after its end.
std::uint64_t residentShare(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::uint64_t value = 0;
    for (std::string word; file >> word;) {
        if (word == "Pss:") {
            file >> value;
            break;
        }
    }
    return value;
}

class MemoryTest : public PlayFixture {};

TEST_F(MemoryTest, ARenderAndItsServiceUseLessThan64Mebibytes) {
    const std::string file = std::string(ORVALO_STAGE) + "/share/orvalo/1.m4a";
    Program play(command({"--file", file, "--render", "/dev/null", "--seconds", "300"}),
                 environment);
    std::uint64_t highest = 0;
    std::size_t processes = 0;
    for (std::uint64_t own = 1; own > 0;) {
        own = residentShare(play.process());
        const auto all = family(play.process());
        std::uint64_t sum = 0;
        for (const auto process : all) {
            sum += residentShare(process);
        }
        highest = std::max(highest, sum);
        processes = std::max(processes, all.size());
    }
    EXPECT_EQ(play.wait(), 0) << play.standardError();
    // bubblewrap twice, and the service.
    EXPECT_EQ(processes, 4U);
    EXPECT_GT(highest, 20'000U);
    EXPECT_LT(highest, 65'536U);
}

}  // namespace

}  // namespace orvalo::testing
