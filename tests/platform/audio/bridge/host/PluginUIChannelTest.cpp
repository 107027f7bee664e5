#include "platform/audio/bridge/host/BridgedPluginUIChannel.h"

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

class Recorder : public BridgedPluginUIListener {
  public:
    std::vector<std::string> calls;
    std::function<void(const std::string&)> react;

    void processReady() override { note("ready"); }
    void processGone() override { note("gone"); }
    void processGivenUp() override { note("given up"); }
    void pluginUIOpened(std::uint64_t window) override { note("opened " + std::to_string(window)); }
    void pluginUIRefused(const std::string& error) override { note("refused " + error); }
    void pluginUIWants(std::int32_t width, std::int32_t height) override {
        note("wants " + std::to_string(width) + "x" + std::to_string(height));
    }
    void pluginUIClosed(const std::string& reason) override { note("closed " + reason); }
    void pluginUIOutdated() override { note("outdated"); }

  private:
    void note(const std::string& call) {
        EXPECT_TRUE(RunLoop::isMainThread());
        calls.push_back(call);
        if (react) {
            react(call);
        }
    }
};

class PluginUIChannelTest : public ::testing::Test {
  protected:
    explicit PluginUIChannelTest(const std::string& role = "half:0") : effect(role) {}

    /// Whether so many calls have come, or do.
    bool hear(std::size_t count) {
        return waitUntil([&] { return listener->calls.size() >= count; });
    }
    void dieByPreset() {
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"});
    }

    FakeEffect effect;
    std::shared_ptr<Recorder> listener = std::make_shared<Recorder>();
    BridgedPluginUIChannel channel{
        effect.mailbox(), [this](std::uint32_t process, bridge::HostMessage message,
                                 const std::function<void(const std::string&)>& completion) {
            effect.supervisor().post(
                {std::move(message), process, [completion](const ServiceAnswer& answer) {
                     if (completion && answer.kind != ServiceAnswer::Kind::died) {
                         completion(answer.error);
                     }
                 }});
        }};
};

TEST_F(PluginUIChannelTest, AListenerHearsHowThingsStandAndWhatComes) {
    channel.setListener(listener);
    EXPECT_THAT(listener->calls, ElementsAre("ready"));
    channel.open(":7", 100, 2.0);
    channel.resize(300, 200);
    channel.show(false);
    channel.open(":7", 200, 2.0);
    channel.show(true);
    ASSERT_TRUE(hear(6));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "opened 101", "wants 300x200", "outdated",
                                             "opened 201", "closed it has been shown"));
}

TEST_F(PluginUIChannelTest, WhatAPluginUINeedsIsHeldUntilItIsGone) {
    const auto window = std::make_shared<int>(1);
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    channel.open(":7", 100, 1.0);
    channel.close(window);
    // Let go of behind the answer.
    while (window.use_count() > 1) {
        sched_yield();
    }
}

TEST_F(PluginUIChannelTest, WhatAPluginUINeedsIsHeldNoLongerThanItsProcessLives) {
    const auto window = std::make_shared<int>(1);
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    effect.supervisor().post({bridge::LoadPreset{.number = 0, .uri = "urn:preset:deadly"}, 0, {}});
    channel.close(window);
    while (window.use_count() > 1) {
        sched_yield();
    }
    channel.close(window);
    while (window.use_count() > 1) {
        sched_yield();
    }
}

TEST_F(PluginUIChannelTest, ARefusalIsALineForPeople) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    channel.open("refuse", 100, 1.0);
    ASSERT_TRUE(hear(2));
    EXPECT_EQ(listener->calls.back(), "refused No \uFFFD UI.");
}

TEST_F(PluginUIChannelTest, APluginUIIsOpenedOnceForEachRequest) {
    const CapturedOutput error(2);
    channel.setListener(listener);
    channel.open("twice", 100, 1.0);
    ASSERT_TRUE(hear(4));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "opened 101", "gone", "ready"));
    EXPECT_THAT(error.text(), HasSubstr("sent a message that makes no sense"));
}

TEST_F(PluginUIChannelTest, WishesAreKeptWithinWhatAWindowCanBe) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    channel.resize(-5, 2000000000);
    ASSERT_TRUE(hear(2));
    EXPECT_EQ(listener->calls.back(), "wants 1x16384");
}

TEST_F(PluginUIChannelTest, OfWishesThatWaitTheLastHolds) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    for (int size = 1; size <= 1000; ++size) {
        channel.resize(size, size);
    }
    // Answered behind the wishes, while the main thread does not turn.
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    ASSERT_TRUE(hear(2));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "wants 1000x1000"));
}

TEST_F(PluginUIChannelTest, WhatWaitsForTheMainThreadHasAnEnd) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    for (int round = 0; round < 1000; ++round) {
        channel.open(":7", 100, 1.0);
    }
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    dieByPreset();
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    ASSERT_TRUE(hear(259));
    EXPECT_EQ(listener->calls.size(), 259U);
    EXPECT_EQ(listener->calls[256], "opened 101");
    EXPECT_EQ(listener->calls[257], "gone");
    EXPECT_EQ(listener->calls[258], "ready");
}

TEST_F(PluginUIChannelTest, TheMainThreadTurnsHoweverMuchComes) {
    constexpr std::size_t kMany = 1000;
    std::size_t heardAtTurn = 0;
    const auto wish = [this] {
        effect.mailbox()->post({.kind = PluginUIEvent::Kind::wants, .width = 1, .height = 1});
    };
    listener->react = [&](const std::string& /*call*/) {
        if (listener->calls.size() == 2) {
            DispatchQueue::main()->async([&] { heardAtTurn = listener->calls.size(); });
        }
        if (listener->calls.size() < kMany) {
            wish();
        }
    };
    channel.setListener(listener);
    ASSERT_TRUE(hear(kMany));
    EXPECT_EQ(heardAtTurn, 2U);
}

TEST_F(PluginUIChannelTest, WhatIsSaidOfAPluginUIThatIsClosedIsNotTakenForTheNext) {
    channel.setListener(listener);
    channel.open(":7", 100, 1.0);
    channel.close({});
    listener = std::make_shared<Recorder>();
    channel.setListener(listener);
    channel.open(":7", 200, 1.0);
    ASSERT_TRUE(hear(2));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "opened 201"));
}

TEST_F(PluginUIChannelTest, TheEndOfAProcessAndTheNextAreHeardOf) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    listener->react = [this](const std::string& call) {
        if (call == "ready") {
            channel.open(":7", 200, 1.0);
        }
    };
    dieByPreset();
    ASSERT_TRUE(hear(4));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "gone", "ready", "opened 201"));
}

TEST_F(PluginUIChannelTest, WhatIsMeantForAProcessThatIsGoneIsDropped) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    dieByPreset();
    // The listener has not heard of it yet.
    channel.open(":7", 300, 1.0);
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    ASSERT_TRUE(hear(3));
    channel.open(":7", 400, 1.0);
    ASSERT_TRUE(hear(4));
    EXPECT_THAT(listener->calls, ElementsAre("ready", "gone", "ready", "opened 401"));
}

TEST_F(PluginUIChannelTest, ThatItIsGivenUpIsHeardOfAndToldToWhoComesLater) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    dieByPreset();
    dieByPreset();
    dieByPreset();
    ASSERT_TRUE(hear(7));
    EXPECT_THAT(listener->calls,
                ElementsAre("ready", "gone", "ready", "gone", "ready", "gone", "given up"));
    listener = std::make_shared<Recorder>();
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    EXPECT_THAT(listener->calls, ElementsAre("given up"));
}

TEST_F(PluginUIChannelTest, AListenerThatIsGoneHearsNothing) {
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    const auto first = listener;
    listener = std::make_shared<Recorder>();
    channel.setListener(listener);
    channel.setListener({});
    dieByPreset();
    listener = std::make_shared<Recorder>();
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    channel.setListener(listener);
    ASSERT_TRUE(hear(1));
    EXPECT_THAT(first->calls, ElementsAre("ready"));
    EXPECT_THAT(listener->calls, ElementsAre("ready"));
}

}  // namespace
