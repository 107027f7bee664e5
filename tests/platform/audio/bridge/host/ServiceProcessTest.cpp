#include "platform/audio/bridge/host/ServiceProcess.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using std::chrono::seconds;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr seconds kLong{30};

/// An executable shell script.
class Script {
  public:
    explicit Script(const std::string& text, std::string name = "program")
        : name_(std::move(name)) {
        std::ofstream(path()) << "#!/bin/sh\n" << text << "\n";
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
    }
    std::filesystem::path path() const { return folder_.path() / name_; }

  private:
    TemporaryFolder folder_;
    const std::string name_;
};

/// A folder that programs are searched in first, for the object's life.
class FirstInPath {
  public:
    explicit FirstInPath(const std::filesystem::path& folder) {
        setenv("PATH", (folder.string() + ":" + before_).c_str(), 1);
    }
    ~FirstInPath() { setenv("PATH", before_.c_str(), 1); }
    FirstInPath(const FirstInPath&) = delete;
    FirstInPath& operator=(const FirstInPath&) = delete;

  private:
    const std::string before_ = getenv("PATH");
};

std::string programInPath(const char* name) {
    const GText path(g_find_program_in_path(name));
    return path.get();
}

std::string readAll(FileDescriptor descriptor) {
    std::ifstream file("/dev/fd/" + std::to_string(descriptor.get()));
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ServiceProcess, ReturnsHowTheProcessEnded) {
    const Script status("exit 3");
    ServiceProcess first(status.path());
    ASSERT_TRUE(first.endsWithin(kLong));
    EXPECT_EQ(first.end(), "ended with status 3");
    const Script signal("kill -SEGV $$");
    ServiceProcess second(signal.path());
    ASSERT_TRUE(second.endsWithin(kLong));
    EXPECT_EQ(second.end(), "was killed by signal 11 (Segmentation fault)");
}

TEST(ServiceProcess, ReturnsTheSignalOfAServiceThatEndedBeforeItsFirstProcessWasOpened) {
    const Script program("exit 0");
    const Script bubblewrap("echo '{ \"child-pid\": 2000000000 }' >&5; exit 139", "bwrap");
    const FirstInPath path(bubblewrap.path().parent_path());
    ServiceProcess process(program.path());
    ASSERT_TRUE(process.endsWithin(kLong));
    EXPECT_EQ(process.end(), "was killed by signal 11 (Segmentation fault)");
}

TEST(ServiceProcess, StartsBubblewrapOnce) {
    const TemporaryFolder folder;
    const auto log = (folder.path() / "starts").string();
    const Script bubblewrap("echo start >>" + log + "; exec " + programInPath("bwrap") + " \"$@\"",
                            "bwrap");
    const FirstInPath path(bubblewrap.path().parent_path());
    const Script program("exit 3");
    ServiceProcess process(program.path());
    ASSERT_TRUE(process.endsWithin(kLong));
    EXPECT_EQ(process.end(), "ended with status 3");
    EXPECT_FALSE(process.failedToConfine());
    std::ifstream starts(log);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(starts), {}), "start\n");
}

/// Interrupts its creator thread by signals for the object's life, at most 30 s. Sends each signal
/// when the thread sleeps again after the last one.
class Interruption {
  public:
    /// whenMany: called once, on another thread, after 10 signals.
    explicit Interruption(std::function<void()> whenMany = {}) : whenMany_(std::move(whenMany)) {
        count_ = 0;
        struct sigaction counting {};
        counting.sa_handler = [](int) { ++count_; };
        sigaction(SIGUSR1, &counting, &before_);
        thread_ = std::thread([this] { interrupt(); });
    }
    ~Interruption() {
        isOver_ = true;
        thread_.join();
        sigaction(SIGUSR1, &before_, nullptr);
    }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// False after 30 s.
    bool lasts() const { return std::chrono::steady_clock::now() < end_; }

  private:
    bool isAsleep() const {
        std::ifstream file(stat_);
        std::string line;
        std::getline(file, line);
        // The state follows the name, which is in brackets.
        const auto name = line.rfind(") ");
        return name != std::string::npos && line.substr(name + 2, 1) == "S";
    }
    void interrupt() {
        constexpr int kMany = 10;
        for (int sent = 0; !isOver_ && lasts();) {
            if (count_ < sent || !isAsleep()) {
                sched_yield();
                continue;
            }
            if (sent == kMany && whenMany_) {
                std::exchange(whenMany_, nullptr)();
            }
            pthread_kill(target_, SIGUSR1);
            ++sent;
        }
    }

    static inline std::atomic<int> count_{0};  // The signals handled.

    std::function<void()> whenMany_;
    const std::string stat_ = "/proc/self/task/" + std::to_string(gettid()) + "/stat";
    const pthread_t target_ = pthread_self();
    const std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::now() + kLong;
    struct sigaction before_ {};
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

TEST(ServiceProcess, WaitsForTheEndDespiteSignals) {
    const Script script("sleep 1000");
    ServiceProcess process(script.path());
    std::atomic<bool> isKilled{false};
    const Interruption interruption([&] {
        isKilled = true;
        kill(process.id(), SIGKILL);
    });
    EXPECT_TRUE(process.endsWithin(kLong));
    EXPECT_TRUE(isKilled);
}

TEST(ServiceProcess, WaitsNoLongerThanTheLimitDespiteSignals) {
    const Script script("sleep 1000");
    ServiceProcess process(script.path());
    const Interruption interruption;
    EXPECT_FALSE(process.endsWithin(std::chrono::milliseconds(100)));
    EXPECT_TRUE(interruption.lasts());
}

TEST(ServiceProcess, KillsTheChildrenOfTheProcess) {
    const auto before = Leftovers::now();
    {
        const Script script("sleep 1000 & setsid sh -c 'sleep 1000 & exec sleep 1000' & wait");
        ServiceProcess process(script.path());
        // bubblewrap twice, the shell, and sleep three times.
        std::set<pid_t> all;
        ASSERT_TRUE(pollUntil([&all] { return (all = descendants()).size() == 6; }));
        EXPECT_FALSE(process.endsWithin(std::chrono::milliseconds(0)));
        EXPECT_EQ(process.end(), "was killed by signal 9 (Killed)");
        EXPECT_TRUE(std::ranges::none_of(all, isAlive));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(ServiceProcess, KillsAStoppedProcess) {
    const Script script("kill -STOP $$");
    ServiceProcess process(script.path());
    EXPECT_EQ(process.end(), "was killed by signal 9 (Killed)");
}

TEST(ServiceProcess, HasItsOwnDescriptorsAndNoOthers) {
    const Script script(
        "for number in 0 1 2 3; do echo $number $(readlink /proc/$$/fd/$number); done\n"
        // The shell has the script open at a higher number.
        "for number in 4 5 6 7 8 9; do test -e /proc/$$/fd/$number && echo more; done\n"
        "echo host $1");
    ServiceProcess process(script.path());
    ASSERT_TRUE(process.endsWithin(kLong));
    const auto text = readAll(process.takeOutput());
    EXPECT_THAT(text, AllOf(HasSubstr("0 /dev/null\n"), HasSubstr("1 pipe:"), HasSubstr("2 pipe:"),
                            HasSubstr("3 socket:"), Not(HasSubstr("more")), HasSubstr("host 1\n")));
}

TEST(ServiceProcess, CountsWhatItsChildrenUse) {
    const Script script("sleep 1000 & sleep 1000 & sleep 1000");
    ServiceProcess process(script.path());
    // With bubblewrap's process 1 and the shell.
    EXPECT_TRUE(pollUntil([&] {
        const auto use = process.use();
        // The kernel counts small memory late.
        return use.threads == 5 && use.memory > 0;
    }));
}

TEST(ServiceProcess, CountsNoProcessesOfTheHostWhileItStarts) {
    const Script script("exit 0");
    for (int round = 0; round < 5; ++round) {
        ServiceProcess process(script.path());
        while (!process.endsWithin(std::chrono::milliseconds(0))) {
            // bubblewrap's process 1 and the shell.
            ASSERT_LE(process.use().threads, 2U);
        }
    }
}

TEST(ServiceProcess, NamesAMissingProgram) {
    const auto before = Leftovers::now();
    try {
        ServiceProcess process("/nowhere/effect-service");
        FAIL() << "It has been started.";
    } catch (const NSError& error) {
        EXPECT_EQ(error.localizedDescription(),
                  "The program /nowhere/effect-service: No such file or directory");
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(ServiceProcess, LeavesNothingBehind) {
    const auto before = Leftovers::now();
    const Script script("exit 0");
    for (int round = 0; round < 20; ++round) {
        ServiceProcess process(script.path());
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(ServiceProcess, InheritsOnlyTheVariablesThatEffectsNeed) {
    setenv("ORVALO_TEST_SECRET", "hunter2", 1);
    setenv("LC_ORVALO_TEST", "C", 1);
    setenv("XDG_ORVALO_TEST", "/x", 1);
    setenv("LV2_PATH", "/lv2", 1);
    const Script script("env");
    ServiceProcess process(script.path());
    ASSERT_TRUE(process.endsWithin(kLong));
    EXPECT_THAT(readAll(process.takeOutput()),
                AllOf(HasSubstr("LC_ORVALO_TEST=C\n"), HasSubstr("XDG_ORVALO_TEST=/x\n"),
                      HasSubstr("LV2_PATH=/lv2\n"), HasSubstr("PATH="), Not(HasSubstr("SECRET"))));
    unsetenv("LV2_PATH");
}

}  // namespace
