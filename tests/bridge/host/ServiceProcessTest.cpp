#include "platform/audio/bridge/host/ServiceProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "platform/audio/bridge/host/ServiceEnvironment.h"
#include "platform/foundation/NSError.h"
#include "tests/bridge/host/FakeEffect.h"
#include "tests/bridge/host/Leftovers.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using std::chrono::seconds;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr seconds kLong{30};

/// A program that is a script for the shell.
class Script {
  public:
    explicit Script(const std::string& text) {
        std::ofstream(path()) << "#!/bin/sh\n" << text << "\n";
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
    }
    std::filesystem::path path() const { return folder_.path() / "program"; }

  private:
    TemporaryFolder folder_;
};

std::string readAll(FileDescriptor descriptor) {
    std::ifstream file("/dev/fd/" + std::to_string(descriptor.get()));
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ServiceProcess, SaysHowItEnded) {
    const Script status("exit 3");
    ServiceProcess first(status.path());
    ASSERT_TRUE(first.endsWithin(kLong));
    EXPECT_EQ(first.end(), "ended with status 3");
    const Script signal("kill -SEGV $$");
    ServiceProcess second(signal.path());
    ASSERT_TRUE(second.endsWithin(kLong));
    EXPECT_EQ(second.end(), "was killed by signal 11 (Segmentation fault)");
}

TEST(ServiceProcess, IsEndedWithAllThatItHasStarted) {
    const auto before = Leftovers::now();
    {
        const Script script("sleep 1000 & echo $!; wait");
        ServiceProcess process(script.path());
        const auto output = process.takeOutput();
        std::array<char, 32> text{};
        while (read(output.get(), text.data(), text.size() - 1) <= 0) {
        }
        const auto child = static_cast<pid_t>(std::stol(text.data()));
        ASSERT_TRUE(isAlive(child));
        EXPECT_FALSE(process.endsWithin(std::chrono::milliseconds(0)));
        EXPECT_EQ(process.end(), "was killed by signal 9 (Killed)");
        while (isAlive(child)) {
            sched_yield();
        }
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(ServiceProcess, IsEndedWhileItIsStopped) {
    const Script script("kill -STOP $$");
    ServiceProcess process(script.path());
    EXPECT_EQ(process.end(), "was killed by signal 9 (Killed)");
}

TEST(ServiceProcess, HasItsOwnDescriptorsAndNoOthers) {
    const Script script(
        "for number in 0 1 2 3; do echo $number $(readlink /proc/$$/fd/$number); done\n"
        // The shell itself has the script open beyond these.
        "for number in 4 5 6 7 8 9; do test -e /proc/$$/fd/$number && echo more; done\n"
        "echo host $1");
    ServiceProcess process(script.path());
    ASSERT_TRUE(process.endsWithin(kLong));
    const auto text = readAll(process.takeOutput());
    EXPECT_THAT(text, AllOf(HasSubstr("0 /dev/null\n"), HasSubstr("1 pipe:"), HasSubstr("2 pipe:"),
                            HasSubstr("3 socket:"), Not(HasSubstr("more")),
                            HasSubstr("host " + std::to_string(getpid()) + "\n")));
}

TEST(ServiceProcess, LeadsAProcessGroupOfItsOwn) {
    const Script script("sleep 1000");
    ServiceProcess process(script.path());
    EXPECT_EQ(getpgid(process.id()), process.id());
    EXPECT_GT(process.residentMemory(), 0U);
}

TEST(ServiceProcess, AProgramThatIsNotThereIsNamed) {
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

TEST(ServiceEnvironment, HasWhatAnEffectNeedsAndNothingElse) {
    setenv("ORVALO_TEST_SECRET", "hunter2", 1);
    setenv("LC_ORVALO_TEST", "C", 1);
    setenv("XDG_ORVALO_TEST", "/x", 1);
    setenv("LV2_PATH", "/lv2", 1);
    const auto environment = serviceEnvironment();
    EXPECT_THAT(environment, Contains("LC_ORVALO_TEST=C"));
    EXPECT_THAT(environment, Contains("XDG_ORVALO_TEST=/x"));
    EXPECT_THAT(environment, Contains("LV2_PATH=/lv2"));
    EXPECT_THAT(environment, Contains(StartsWith("PATH=")));
    EXPECT_THAT(environment, Each(Not(HasSubstr("SECRET"))));
    unsetenv("LV2_PATH");
}

}  // namespace
