#include "platform/audio/bridge/host/ServiceRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include <memory>
#include <optional>
#include <string>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/QuantumFeed.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::StartsWith;

/// A run of the fake service.
class ServiceRunTest : public ::testing::Test {
  protected:
    void start(const std::string& role) {
        order.uri = "urn:fake:" + role;
        run.emplace(ServiceRun::Surroundings{order, limits, render, *pluginUI, last});
    }

    void untilReady() {
        while (!run->isReady()) {
            ASSERT_TRUE(run->handleEvents(wakeup.get())) << run->finish().what;
        }
    }
    void loadPreset() {
        bool isDone = false;
        run->send({bridge::LoadPreset{.number = 0, .uri = "urn:preset:a"}, 0,
                   [&isDone](const ServiceAnswer& /*answer*/) { isDone = true; }});
        while (!isDone) {
            ASSERT_TRUE(run->handleEvents(wakeup.get())) << run->finish().what;
        }
    }

    const CapturedOutput error{2};
    const BridgeLimits limits = unhurriedLimits();
    ServiceOrder order{
        .program = fakeServicePath(), .uri = {}, .places = {}, .layout = {2, 2, 3}, .ports = {}};
    RenderSlot<AUMIDIOutputEventBlock> midiBlock;
    BridgedRender render{midiBlock, 1, 2, limits};
    const std::shared_ptr<PluginUIChannel> pluginUI =
        std::make_shared<PluginUIChannel>(PluginUIChannel::Send());
    LastState last;
    const FileDescriptor wakeup{eventfd(0, EFD_CLOEXEC)};
    std::optional<ServiceRun> run;
};

TEST_F(ServiceRunTest, AServiceThatDiesRightAfterItsAnswerCountsAsDead) {
    start("last-words:1");
    siginfo_t info{};
    // bubblewrap, which ends when the service has ended.
    const auto process = onlyChild();
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT), 0);
    while (run->handleEvents(wakeup.get())) {
    }
    EXPECT_THAT(run->finish().what, StartsWith("was killed by signal 9 (Killed)"));
    EXPECT_EQ(last.state, "first");
    EXPECT_TRUE(children().empty());
}

// As when the first quantum is handed over while the supervisor connects the service.
TEST_F(ServiceRunTest, TheTimeOfAQuantumStartsWhenTheServiceIsReady) {
    start("early:1");
    untilReady();
    EXPECT_TRUE(run->handleEvents(wakeup.get()));
}

TEST_F(ServiceRunTest, APresetIsLoadedAgainIfTheEffectHasNotRun) {
    start("half:0");
    untilReady();
    loadPreset();
    EXPECT_EQ(last.preset, "urn:preset:a");
}

// As when both come before the supervisor looks at the quanta.
TEST_F(ServiceRunTest, APresetIsNotLoadedAgainSinceTheFirstQuantum) {
    start("half:0");
    untilReady();
    QuantumFeed([this](const auto& input, const auto& output) {
        render.render(input, output);
    }).next();
    loadPreset();
    EXPECT_EQ(last.preset, "");
}

}  // namespace
