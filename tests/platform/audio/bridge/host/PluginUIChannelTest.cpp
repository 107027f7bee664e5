#include "platform/audio/bridge/host/PluginUIChannel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string text(const ServiceReady& /*event*/) {
    return "ready";
}
std::string text(const ServiceLost& /*event*/) {
    return "lost";
}
std::string text(const ServiceGivenUp& /*event*/) {
    return "given up";
}
std::string text(const PluginUIRefused& event) {
    return "refused " + event.error;
}
std::string text(const bridge::PluginUIOpened& event) {
    return "opened " + std::to_string(event.window);
}
std::string text(const bridge::PluginUIResizeRequest& event) {
    return "resize " + std::to_string(event.width) + "x" + std::to_string(event.height);
}
std::string text(const bridge::PluginUIClosed& event) {
    return "closed " + event.reason;
}
std::string text(const bridge::PluginUIOutdated& /*event*/) {
    return "outdated";
}

class PluginUIChannelTest : public ::testing::Test {
  protected:
    PluginUIChannelTest() : effect("half:0") {}
    ~PluginUIChannelTest() override { channel.setListener({}); }

    /// Records only events that are reported after the call.
    void listen() {
        events.clear();
        channel.setListener([this](const PluginUIEvent& event) {
            EXPECT_TRUE(RunLoop::isMainThread());
            events.push_back(std::visit([](const auto& any) { return text(any); }, event));
            if (react) {
                react(events.back());
            }
        });
    }
    /// Waits until at least `count` events are recorded; false after a minute.
    bool waitForEvents(std::size_t count) {
        return waitUntil([&] { return events.size() >= count; });
    }
    /// Waits until the service has handled all earlier commands.
    void finishCommands() {
        effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    }
    void dieByPreset() {
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    }
    static void waitForRelease(const std::shared_ptr<int>& held) {
        while (held.use_count() > 1) {
            sched_yield();
        }
    }

    std::vector<std::string> events;
    std::function<void(const std::string&)> react;
    FakeEffect effect;
    PluginUIChannel& channel = effect.pluginUIChannel();
};

TEST_F(PluginUIChannelTest, ReportsTheConditionFirstAndThenEachEventInOrder) {
    listen();
    EXPECT_THAT(events, ElementsAre("ready"));
    channel.open(":7", 100, 2.0);
    channel.resize(300, 200);
    channel.show(false);
    channel.open(":7", 200, 2.0);
    channel.show(true);
    ASSERT_TRUE(waitForEvents(6));
    EXPECT_THAT(events, ElementsAre("ready", "opened 101", "resize 300x200", "outdated",
                                    "opened 201", "closed it has been shown"));
}

TEST_F(PluginUIChannelTest, ReleasesTheHeldWindowWhenTheServiceHasClosedTheUI) {
    const auto window = std::make_shared<int>(1);
    listen();
    channel.open(":7", 100, 1.0);
    channel.close(window);
    waitForRelease(window);
}

TEST_F(PluginUIChannelTest, ReleasesTheHeldWindowWhenTheServiceHasEnded) {
    const auto window = std::make_shared<int>(1);
    listen();
    effect.supervisor().post({bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"}, 0, {}});
    channel.close(window);
    waitForRelease(window);
    channel.close(window);
    waitForRelease(window);
}

TEST_F(PluginUIChannelTest, ReportsARefusalAsPlainText) {
    listen();
    channel.open("refuse", 100, 1.0);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(events.back(), "refused No \uFFFD UI.");
}

TEST_F(PluginUIChannelTest, RestartsAServiceThatOpensTheUITwice) {
    const CapturedOutput error(2);
    listen();
    channel.open("twice", 100, 1.0);
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_THAT(events, ElementsAre("ready", "opened 101", "lost", "ready"));
    EXPECT_THAT(error.text(), HasSubstr("sent an invalid message"));
}

TEST_F(PluginUIChannelTest, ClampsResizeRequests) {
    listen();
    channel.resize(-5, 2000000000);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(events.back(), "resize 1x16384");
}

TEST_F(PluginUIChannelTest, CoalescesConsecutiveResizeRequests) {
    listen();
    for (int size = 1; size <= 1000; ++size) {
        channel.resize(size, size);
    }
    finishCommands();
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(events, ElementsAre("ready", "resize 1000x1000"));
}

TEST_F(PluginUIChannelTest, QueuesAtMost256EventsButEveryConditionOfTheService) {
    listen();
    for (int round = 0; round < 1000; ++round) {
        channel.open(":7", 100, 1.0);
    }
    finishCommands();
    dieByPreset();
    finishCommands();
    ASSERT_TRUE(waitForEvents(259));
    EXPECT_EQ(events.size(), 259U);
    EXPECT_EQ(events[256], "opened 101");
    EXPECT_EQ(events[257], "lost");
    EXPECT_EQ(events[258], "ready");
}

TEST_F(PluginUIChannelTest, LeavesTheMainThreadTimeForOtherWorkBetweenEvents) {
    constexpr std::size_t kMany = 1000;
    std::size_t heardByOtherWork = 0;
    react = [&](const std::string& /*event*/) {
        if (events.size() == 2) {
            DispatchQueue::main()->async([&] { heardByOtherWork = events.size(); });
        }
        if (events.size() < kMany) {
            channel.post(bridge::PluginUIResizeRequest{1, 1});
        }
    };
    listen();
    ASSERT_TRUE(waitForEvents(kMany));
    EXPECT_EQ(heardByOtherWork, 2U);
}

TEST_F(PluginUIChannelTest, DropsTheEventsOfAUIThatIsClosed) {
    listen();
    channel.open(":7", 100, 1.0);
    channel.close({});
    listen();
    channel.open(":7", 200, 1.0);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(events, ElementsAre("ready", "opened 201"));
}

TEST_F(PluginUIChannelTest, ReportsTheEndOfAServiceAndItsSuccessor) {
    listen();
    react = [this](const std::string& event) {
        if (event == "ready") {
            channel.open(":7", 200, 1.0);
        }
    };
    dieByPreset();
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_THAT(events, ElementsAre("ready", "lost", "ready", "opened 201"));
}

TEST_F(PluginUIChannelTest, DropsCommandsForAServiceThatHasEnded) {
    listen();
    dieByPreset();
    // The listener does not know yet.
    channel.open(":7", 300, 1.0);
    finishCommands();
    ASSERT_TRUE(waitForEvents(3));
    channel.open(":7", 400, 1.0);
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_THAT(events, ElementsAre("ready", "lost", "ready", "opened 401"));
}

TEST_F(PluginUIChannelTest, ReportsThatTheServiceIsGivenUpAlsoToALaterListener) {
    listen();
    dieByPreset();
    dieByPreset();
    dieByPreset();
    ASSERT_TRUE(waitForEvents(7));
    EXPECT_THAT(events, ElementsAre("ready", "lost", "ready", "lost", "ready", "lost", "given up"));
    listen();
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_THAT(events, ElementsAre("given up"));
}

TEST_F(PluginUIChannelTest, KeepsNoEventsFromBeforeTheListenerWasSet) {
    listen();
    channel.setListener({});
    dieByPreset();
    finishCommands();
    EXPECT_THAT(events, ElementsAre("ready"));
    listen();
    channel.open(":7", 100, 1.0);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(events, ElementsAre("ready", "opened 101"));
}

}  // namespace
