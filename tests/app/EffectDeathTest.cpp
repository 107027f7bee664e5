#include <gmock/gmock.h>

#include <csignal>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/ApplicationProcesses.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::Value;

/// The application while its effect service is killed.
class EffectDeathTest : public ApplicationFixture {
  protected:
    EffectDeathTest() { environment["ORVALO_EFFECT_LOADING"] = "out-of-process"; }

    std::vector<RunningProcess> processes() const {
        return processesWithData(environment.at("XDG_DATA_HOME"));
    }
    RunningProcess application() const { return processNamed("orvalo-on", processes()); }
    RunningProcess service() const { return processNamed("effect-service", processes()); }

    void expectItPlaysAndStops() {
        focus();
        key("space");
        EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine stopping."),
                  "AUEnginePlayer: Audio engine stopping.");
        key("space");
        EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
                  "AUEnginePlayer: Audio engine starting.");
    }

    bool isGivenUp() const {
        return Value(tree.names(),
                     Contains("The UI of Orvalo is closed: the effect has died too often, "
                              "and playback goes on dry."));
    }

    /// Sends the signal to the effect service and waits until the next one shows its UI.
    void endEffect(int signal) {
        const auto ended = service();
        ASSERT_NE(ended.number, 0);
        kill(ended.number, signal);
        EXPECT_TRUE(pollUntil([this, &ended] {
            const auto next = service();
            return next.number != 0 && next.number != ended.number && effectPlace().has_value();
        }));
    }
};

TEST_F(EffectDeathTest, TheApplicationPlaysOnAndShowsTheEffectAgain) {
    start();
    key("ctrl+e");
    ASSERT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
    key("space");
    ASSERT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
              "AUEnginePlayer: Audio engine starting.");
    endEffect(SIGKILL);
    expectItPlaysAndStops();
    const auto descriptors = application().descriptorCount();
    const auto threads = application().status("Threads");
    endEffect(SIGSTOP);
    expectItPlaysAndStops();
    EXPECT_TRUE(pollUntil([&] { return application().descriptorCount() <= descriptors; }));
    EXPECT_TRUE(pollUntil([&] { return application().status("Threads") <= threads; }));
    // The third death within a minute is final. It is this one, unless the machine took a minute
    // for the steps above. SIGABRT, because sanitizers handle faults themselves.
    EXPECT_TRUE(pollUntil([this] {
        if (const auto next = service(); next.number != 0) {
            kill(next.number, SIGABRT);
        }
        return isGivenUp();
    }));
    EXPECT_EQ(service().number, 0);
    EXPECT_TRUE(pollUntil([] { return !effectPlace().has_value(); }));
    expectItPlaysAndStops();
    ASSERT_TRUE(tree.press("Try Again"));
    EXPECT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
    EXPECT_EQ(quit(), 0);
    EXPECT_TRUE(pollUntil([this] { return processes().empty(); }));
    // A stopped service is detected by the audio or by the messages; the time differs under
    // sanitizers. What a service did at its end depends on the machine's speed.
    EXPECT_THAT(
        program->standardError(),
        ContainsRegex(
            "The effect <urn:tessaly:orvalo> was killed by signal 9 .Killed.[a-z ]*; "
            "it is started again with its last state\\."
            "(.|\n)*"
            "The effect <urn:tessaly:orvalo> did not (finish a quantum within|"
            "answer for) [A-Za-z0-9 ]+; it is started again with its last state\\."
            "(.|\n)*"
            "The effect <urn:tessaly:orvalo> was killed by signal 6 .Aborted.[a-z ]*\\."
            "(.|\n)*"
            "The effect <urn:tessaly:orvalo> died 3 times within 60 s and is "
            "not started again until playback starts or its UI is shown; playback goes on dry\\."));
}

TEST_F(EffectDeathTest, TheEffectServiceEndsWithAKilledApplication) {
    start();
    ASSERT_NE(service().number, 0);
    program->signal(SIGKILL);
    EXPECT_EQ(program->wait(), -SIGKILL);
    EXPECT_TRUE(pollUntil([this] { return service().number == 0; }));
}

}  // namespace

}  // namespace orvalo::testing
