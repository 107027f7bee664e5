#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using Kind = ServiceAnswer::Kind;

std::string text(const ServiceReady& /*event*/) {
    return "ready";
}
std::string text(const ServiceLost& /*event*/) {
    return "lost";
}
std::string text(const bridge::PluginUIOpened& /*event*/) {
    return "opened";
}
std::string text(const bridge::PluginUIClosed& event) {
    return "closed: " + event.reason;
}
template <typename Event>
std::string text(const Event& /*event*/) {
    return "another";
}

BridgeLimits hastyLimits() {
    auto limits = patientLimits();
    limits.pluginUI = std::chrono::milliseconds(300) * BridgeLimits::kSlowness;
    limits.ping = std::chrono::milliseconds(20);
    limits.tick = std::chrono::milliseconds(10);
    // A death would be one too many.
    limits.deaths = 1;
    return limits;
}

const std::string kClosed = "closed: it did not answer for " +
                            durationText(hastyLimits().pluginUI) + ", the effect plays on";

class HungPluginUI : public ::testing::Test {
  protected:
    explicit HungPluginUI(const std::string& role = "half:0",
                          const BridgeLimits& limits = hastyLimits())
        : effect(role, limits) {
        channel.setListener([this](const PluginUIEvent& event) {
            events.push_back(std::visit([](const auto& any) { return text(any); }, event));
        });
    }
    ~HungPluginUI() override { channel.setListener({}); }

    bool waitForEvents(std::size_t count) {
        return waitUntil([&] { return events.size() >= count; });
    }
    Kind setContextName() {
        return effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"}).kind;
    }

    const CapturedOutput error{2};
    std::vector<std::string> events;
    FakeEffect effect;
    PluginUIChannel& channel = effect.pluginUIChannel();
};

TEST_F(HungPluginUI, IsClosedWhileItsEffectPlaysOn) {
    const auto services = children();
    channel.open("hang-later", 100, 1.0);
    ASSERT_TRUE(waitForEvents(3));
    EXPECT_THAT(events, ElementsAre("ready", "opened", kClosed));
    channel.close({});
    EXPECT_TRUE(FakeEffect::isWet(effect.render()));
    EXPECT_EQ(children(), services);
    EXPECT_THAT(error.text(), Not(HasSubstr("did not answer")));
}

TEST_F(HungPluginUI, IsClosedAlsoWhenItHangsWhileItIsOpened) {
    channel.open("hang", 100, 1.0);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_THAT(events, ElementsAre("ready", kClosed));
    EXPECT_TRUE(FakeEffect::isWet(effect.render()));
}

TEST_F(HungPluginUI, IsOpenedAgainInTheNextService) {
    channel.open("hang-later", 100, 1.0);
    ASSERT_TRUE(waitForEvents(3));
    channel.close({});
    channel.open(":7", 200, 1.0);
    ASSERT_TRUE(waitForEvents(5));
    channel.open(":7", 200, 1.0);
    ASSERT_TRUE(waitForEvents(6));
    EXPECT_THAT(events, ElementsAre("ready", "opened", kClosed, "lost", "ready", "opened"));
    EXPECT_THAT(error.text(), HasSubstr("The effect <urn:fake:half:0> has a UI that hangs; it is "
                                        "started again with its last state."));
    EXPECT_THAT(error.text(), HasSubstr("with 'first' 0=0.25 1=0.5 2=0.75\n"));
}

TEST_F(HungPluginUI, LetsTheNextServiceAnswerARequestToTheEffect) {
    channel.open("hang-later", 100, 1.0);
    ASSERT_TRUE(waitForEvents(3));
    channel.close({});
    EXPECT_EQ(
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:a"}).kind,
        Kind::done);
    EXPECT_FALSE(effect.supervisor().hasGivenUp());
    EXPECT_TRUE(effect.renderUntilWet());
}

TEST_F(HungPluginUI, IsForgivenWhenItAnswersAfterAll) {
    const auto services = children();
    const auto window = std::make_shared<int>(1);
    channel.open("hang-until-closed", 100, 1.0);
    ASSERT_TRUE(waitForEvents(3));
    channel.close(window);
    EXPECT_TRUE(pollUntil([&window] { return window.use_count() == 1; }));
    EXPECT_EQ(setContextName(), Kind::done);
    channel.open(":7", 200, 1.0);
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_THAT(events, ElementsAre("ready", "opened", kClosed, "opened"));
    EXPECT_EQ(children(), services);
}

TEST_F(HungPluginUI, EndsTheServiceWhenARequestToTheEffectWaits) {
    channel.open("hang", 100, 1.0);
    EXPECT_EQ(
        effect.supervisor().perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:a"}).kind,
        Kind::died);
    EXPECT_THAT(error.text(),
                HasSubstr("did not answer for " + durationText(hastyLimits().pluginUI)));
}

BridgeLimits slowPluginUILimits() {
    auto limits = hastyLimits();
    limits.request = limits.pluginUI;
    limits.pluginUI = std::chrono::hours(1);
    return limits;
}

class ClosedPluginUI : public HungPluginUI {
  protected:
    ClosedPluginUI() : HungPluginUI("half:0", slowPluginUILimits()) {}
};

TEST_F(ClosedPluginUI, GivesTheServiceNoMoreTime) {
    const auto window = std::make_shared<int>(1);
    channel.open(":7", 100, 1.0);
    ASSERT_TRUE(waitForEvents(2));
    channel.close(window);
    EXPECT_TRUE(pollUntil([&window] { return window.use_count() == 1; }));
    EXPECT_EQ(effect.supervisor()
                  .perform(bridge::LoadPreset{.number = 0, .uri = "urn:preset:stuck"})
                  .kind,
              Kind::died);
}

class HungPluginUILibrary : public HungPluginUI {
  protected:
    HungPluginUILibrary() : HungPluginUI("hang-ui:0") {}
};

TEST_F(HungPluginUILibrary, IsRefusedWhileTheEffectPlaysOn) {
    const auto answer = effect.supervisor().perform(bridge::LoadPluginUI{});
    EXPECT_EQ(answer.kind, Kind::refused);
    EXPECT_EQ(answer.error, "The UI of <urn:fake:hang-ui:0> did not answer for " +
                                durationText(hastyLimits().pluginUI) + "; the effect plays on.");
    EXPECT_TRUE(FakeEffect::isWet(effect.render()));
}

}  // namespace
