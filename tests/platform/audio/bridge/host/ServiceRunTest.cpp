#include "platform/audio/bridge/host/ServiceRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::StartsWith;

TEST(ServiceRunTest, AServiceThatDiesRightAfterItsAnswerCountsAsDead) {
    const CapturedOutput error(2);
    const auto limits = patientLimits();
    const ServiceOrder order{.program = fakeServicePath(),
                             .uri = "urn:fake:last-words:1",
                             .places = {},
                             .layout = {2, 2, 3},
                             .ports = {}};
    RenderSlot<AUMIDIOutputEventBlock> midiBlock;
    BridgedRender render(midiBlock, 1, limits);
    const auto pluginUI = std::make_shared<PluginUIChannel>(PluginUIChannel::Send());
    LastState last;
    const FileDescriptor wakeup(eventfd(0, EFD_CLOEXEC));
    ServiceRun run({order, limits, render, *pluginUI, last});
    siginfo_t info{};
    // bubblewrap, which ends when the service has ended.
    const auto process = *children().begin();
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT), 0);
    while (run.handleEvents(wakeup.get())) {
    }
    EXPECT_THAT(run.finish().what, StartsWith("was killed by signal 9 (Killed)"));
    EXPECT_EQ(last.state, "first");
    EXPECT_TRUE(children().empty());
}

}  // namespace
