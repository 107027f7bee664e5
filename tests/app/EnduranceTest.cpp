#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "tests/app/ApplicationFixture.h"

namespace orvalo::testing {

namespace {

namespace fs = std::filesystem;

// Under the address sanitizer every end of the application is a check for leaks, which the exit
// status tells of. It fills memory of its own, and does not go with the web engine.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// How often the whole application is started: a hundred times, under a sanitizer a few; or as
/// ORVALO_TEST_STARTS in the environment says.
int applicationStarts() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes it.
    const char* stated = std::getenv("ORVALO_TEST_STARTS");
    return stated != nullptr ? std::stoi(stated) : kIsSanitized ? 6 : 100;
}

/// A running process, as the system's own files tell of it.
struct Process {
    int number = 0;
    std::string name;
};

class EnduranceTest : public ApplicationFixture {
  protected:
    /// The processes that run and were started with the test's own data folder: the application
    /// and all that it has started.
    std::vector<Process> processes() const {
        const auto mark = "XDG_DATA_HOME=" + environment.at("XDG_DATA_HOME");
        std::vector<Process> result;
        std::error_code gone;
        for (const auto& entry : fs::directory_iterator("/proc", gone)) {
            const auto number = entry.path().filename().string();
            if (number.find_first_not_of("0123456789") == std::string::npos &&
                textOf(entry.path() / "environ").find(mark) != std::string::npos) {
                result.push_back({std::stoi(number), textOf(entry.path() / "comm")});
            }
        }
        return result;
    }

    /// Of the application, which runs.
    fs::path itsFolder() const {
        const auto all = processes();
        const auto found = std::find_if(all.begin(), all.end(), [](const auto& process) {
            return process.name.starts_with("orvalo-on");
        });
        return "/proc/" + std::to_string(found == all.end() ? 0 : found->number);
    }

    static std::size_t countIn(const fs::path& folder) {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    /// A number of the process's "status", such as VmRSS, which is in KiB.
    static long status(const fs::path& folder, const std::string& name) {
        std::ifstream file(folder / "status");
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with(name + ":")) {
                return std::stol(line.substr(name.size() + 1));
            }
        }
        return 0;
    }

    /// Uses the effect's interface: a knob, the choice of presets, a typed value.
    static void useEffect() {
        ASSERT_TRUE(eventually([] { return effectPlace().has_value(); }));
        pointAt(kThreshold);
        act({"mousedown", "1", "mousemove_relative", "0", "20", "mouseup", "1"});
        pointAt(kPresets);
        act({"click", "1", "key", "Down", "key", "Return"});
        pointAt(kThresholdsValue);
        act({"click", "--repeat", "2", "1", "type", "--", "-12"});
        act({"key", "Return"});
    }

    void playAndStop() {
        key("space");
        EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
                  "AUEnginePlayer: Audio engine starting.");
        key("space");
        EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine stopping."),
                  "AUEnginePlayer: Audio engine stopping.");
    }

  private:
    static std::string textOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(EnduranceTest, AHundredStartsOfPlaybackLeaveNothingBehind) {
    start();
    // What is made once and kept: threads of pools, libraries, pictures.
    constexpr int kFirst = 20;
    constexpr int kAll = 100;
    fs::path process;
    std::size_t files = 0;
    long memory = 0;
    long threads = 0;
    for (int round = 0; round < kAll; ++round) {
        if (round == kFirst) {
            process = itsFolder();
            files = countIn(process / "fd");
            threads = status(process, "Threads");
            memory = status(process, "VmRSS");
        }
        playAndStop();
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    // Pools of the toolkit end their threads a while after the last use.
    EXPECT_TRUE(eventually([&] { return countIn(process / "fd") <= files; }));
    EXPECT_TRUE(eventually([&] { return status(process, "Threads") <= threads; }));
    if (!kIsSanitized) {
        // A pass decodes seconds of music into megabytes; eighty of them lost would be far above
        // this.
        constexpr long kKibibytesOfChance = 16L * 1024;
        EXPECT_LE(status(process, "VmRSS"), memory + kKibibytesOfChance);
    }
    EXPECT_EQ(quit(), 0) << program->standardError();
    EXPECT_TRUE(eventually([this] { return processes().empty(); }));
}

TEST_F(EnduranceTest, ApplicationsLeaveNothingBehindHoweverOften) {
    const int all = applicationStarts();
    for (int round = 0; round < all; ++round) {
        start();
        const bool plays = round % 3 == 1;
        if (round % 2 == 1) {
            key("ctrl+e");
            if (kIsSanitized || round % 10 == 1) {
                useEffect();
                focus();
            }
        }
        if (plays) {
            key("space");
            EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
                      "AUEnginePlayer: Audio engine starting.");
        }
        // Some with a page, whose engine has processes of its own.
        if (!kIsSanitized && round % 25 == 5) {
            key("ctrl+i");
            EXPECT_TRUE(eventually([this] { return tree.shows("Back"); }));
        }
        ASSERT_EQ(quit(), 0) << "round " << round << "\n" << program->standardError();
        ASSERT_TRUE(eventually([this] { return processes().empty(); })) << "round " << round;
    }
}

}  // namespace

}  // namespace orvalo::testing
