#include <cstdlib>
#include <vector>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/ApplicationProcesses.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

// Under the address sanitizer every run of the application checks for leaks, which its exit status
// reports. The sanitizer needs extra memory and does not work with the web engine.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// The number of application starts: 100, fewer under a sanitizer, or ORVALO_TEST_STARTS of the
/// environment.
int applicationStarts() {
    const char* stated = std::getenv("ORVALO_TEST_STARTS");
    return stated != nullptr ? std::stoi(stated) : kIsSanitized ? 6 : 100;
}

class EnduranceTest : public ApplicationFixture {
  protected:
    std::vector<RunningProcess> processes() const {
        return processesWithData(environment.at("XDG_DATA_HOME"));
    }

    /// Uses the plug-in UI: a knob, the list of presets, a typed value.
    static void useEffect() {
        ASSERT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
        pointAt(kThreshold);
        act({"mousedown", "1", "mousemove_relative", "0", "20", "mouseup", "1"});
        pointAt(kPresets);
        act({"click", "1", "key", "Down", "key", "Return"});
        clickIntoField(kThresholdsValue);
        act({"type", "--", "-12"});
        act({"key", "Return"});
    }
};

TEST_F(EnduranceTest, AHundredPlaybacksLeakNothing) {
    start();
    // The first rounds create threads of pools, libraries and pictures, which the application
    // keeps.
    constexpr int kFirst = 20;
    constexpr int kAll = 100;
    RunningProcess process;
    std::size_t files = 0;
    long memory = 0;
    long threads = 0;
    for (int round = 0; round < kAll; ++round) {
        if (round == kFirst) {
            process = processNamed("orvalo-on", processes());
            files = process.descriptorCount();
            threads = process.status("Threads");
            memory = process.status("VmRSS");
        }
        playAndStop();
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    // The toolkit's thread pools end their threads after some time.
    EXPECT_TRUE(pollUntil([&] { return process.descriptorCount() <= files; }));
    EXPECT_TRUE(pollUntil([&] { return process.status("Threads") <= threads; }));
    if (!kIsSanitized) {
        // A pass decodes seconds of music into megabytes; leaking eighty passes would exceed this.
        constexpr long kKibibytesOfChance = 16L * 1024;
        EXPECT_LE(process.status("VmRSS"), memory + kKibibytesOfChance);
    }
    EXPECT_EQ(quit(), 0) << program->standardError();
    EXPECT_TRUE(pollUntil([this] { return processes().empty(); }));
}

TEST_F(EnduranceTest, RepeatedApplicationStartsLeaveNothingBehind) {
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
        // Some rounds show a web page, which starts the engine's processes.
        if (!kIsSanitized && round % 25 == 5) {
            key("ctrl+i");
            EXPECT_TRUE(pollUntil([this] { return tree.shows("Back"); }));
        }
        ASSERT_EQ(quit(), 0) << "round " << round << "\n" << program->standardError();
        ASSERT_TRUE(pollUntil([this] { return processes().empty(); })) << "round " << round;
    }
}

}  // namespace

}  // namespace orvalo::testing
