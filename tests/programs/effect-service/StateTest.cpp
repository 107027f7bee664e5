#include <gtest/gtest.h>

#include "platform/audio/lv2/URIDMap.h"
#include "programs/effect-service/PackedState.h"
#include "tests/programs/effect-service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// The state that was sent before or after the last answer, once the effect has run.
std::string stateOf(HostedEffect& effect) {
    const auto passed = effect.service.takePassed<bridge::State>();
    return passed.empty() ? effect.service.await<bridge::State>().text : passed.back().text;
}

TEST(ServiceState, IsSentOnceTheEffectHasRun) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.service.send(bridge::LoadPreset{1, "urn:orvalo:zoo:probe#another"});
    EXPECT_EQ(effect.service.answer(1), "");
    effect.service.send(bridge::Prepare{2, 44100.0});
    EXPECT_EQ(effect.service.answer(2), "");
    EXPECT_TRUE(effect.service.takePassed<bridge::State>().empty());
    effect.renderQuantum(16);
    EXPECT_NE(stateOf(effect), "");
}

TEST(ServiceState, IsSentBeforeAnotherRateReplacesTheInstance) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.renderQuantum(16);
    effect.service.send(bridge::Prepare{1, 44100.0});
    EXPECT_EQ(effect.service.answer(1), "");
    EXPECT_EQ(effect.service.takePassed<bridge::State>().size(), 1U);
}

TEST(ServiceState, IsSentBeforeTheAnswerToTheRequestThatChangedIt) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.renderQuantum(16);
    const auto first = stateOf(effect);
    effect.service.send(bridge::LoadPreset{1, "urn:orvalo:zoo:probe#another"});
    EXPECT_EQ(effect.service.answer(1), "");
    const auto told = effect.service.takePassed<bridge::State>();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_NE(told[0].text, first);
    effect.service.send(bridge::Prepare{2, 44100.0});
    EXPECT_EQ(effect.service.answer(2), "");
    effect.service.send(bridge::LoadPreset{3, "urn:orvalo:zoo:probe#another"});
    EXPECT_EQ(effect.service.answer(3), "");
    EXPECT_TRUE(effect.service.takePassed<bridge::State>().empty());
}

TEST(ServiceState, IsRestoredInTheNextService) {
    HostedEffect first(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    first.mustInstantiate();
    first.renderQuantum(16);
    const auto original = stateOf(first);
    first.service.send(bridge::LoadPreset{1, "urn:orvalo:zoo:probe#another"});
    EXPECT_EQ(first.service.answer(1), "");
    const auto state = stateOf(first);
    ASSERT_NE(state, original);

    HostedEffect second(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    second.request.state = state;
    second.request.stateFolder = first.stateFolder();
    second.mustInstantiate();
    second.renderQuantum(16);
    EXPECT_EQ(stateOf(second), state);
}

TEST(ServiceState, IsFollowedByThePresetThatTheLastServiceLoadedBeforeItRan) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:deferred");
    effect.request.preset = "urn:orvalo:zoo:deferred#quarter";
    effect.request.controls = {{2, 3.0F}};
    effect.mustInstantiate();
    EXPECT_EQ(effect.render({{1.0F}}, {1}, 1)[0][0], 0.75F);
    HostedEffect other(ORVALO_ZOO, "urn:orvalo:zoo:deferred");
    other.request.preset = "urn:orvalo:zoo:deferred#gone";
    other.mustInstantiate();
    EXPECT_EQ(other.render({{1.0F}}, {1}, 1)[0][0], 0.5F);
}

TEST(ServiceState, IsSentWhenTheEffectChangesItByItself) {
    HostedEffect effect(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:prober");
    effect.mustInstantiate();
    effect.renderQuantum(16);
    const auto first = stateOf(effect);
    effect.renderQuantum(16);
    const auto second = stateOf(effect);
    EXPECT_NE(second, first);
    effect.renderQuantum(16);
    EXPECT_NE(stateOf(effect), second);
}

TEST(ServiceState, ThatCannotBeReadIsReplacedByTheDefault) {
    HostedEffect usual(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    usual.mustInstantiate();
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.request.state = "nonsense";
    effect.mustInstantiate();
    EXPECT_EQ(effect.service.standardError(),
              "The saved state cannot be read; the effect starts with its default.\n");
    effect.renderQuantum(16);
    usual.renderQuantum(16);
    EXPECT_EQ(stateOf(effect).size(), stateOf(usual).size());
}

TEST(ServiceContext, NameIsGivenAtTheStartAndLater) {
    HostedEffect effect(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:prober");
    effect.request.contextName = "/nowhere";
    effect.mustInstantiate();
    EXPECT_NE(effect.service.standardError().find("context: /nowhere"), std::string::npos);
    HostedEffect nameless(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:prober");
    nameless.mustInstantiate();
    EXPECT_EQ(nameless.service.standardError(), "");
    nameless.service.send(bridge::SetContextName{1, "/nowhere"});
    EXPECT_EQ(nameless.service.answer(1), "");
    // This effect takes no options later, so the next instance gets the name.
    nameless.service.send(bridge::Prepare{2, 44100.0});
    EXPECT_EQ(nameless.service.answer(2), "");
    EXPECT_NE(nameless.service.standardError().find("context: /nowhere"), std::string::npos);
}

class PackedState : public ::testing::Test {
  protected:
    const LV2StateProperties properties_{
        {URIDMap::shared().map("urn:test:key"), URIDMap::shared().map("urn:test:type"), 1,
         std::string("a\0b", 3)},
        {URIDMap::shared().map("urn:test:other"), URIDMap::shared().map("urn:test:type"), 3, ""}};
    const std::string packed_ = packState(properties_);
};

TEST_F(PackedState, IsUnpackedAsItWasPacked) {
    EXPECT_EQ(unpackState(packed_), properties_);
    EXPECT_EQ(unpackState(packState({})), LV2StateProperties());
}

TEST_F(PackedState, IsRejectedWhenBytesAreMissingOrLeft) {
    for (std::size_t length = 0; length < packed_.size(); ++length) {
        ASSERT_EQ(unpackState(packed_.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(unpackState(packed_ + 'x'), std::nullopt);
}

TEST_F(PackedState, IsRejectedWhenAURIHasAnotherNumber) {
    auto changed = packed_;
    const auto place = changed.find("urn:test:key");
    ASSERT_NE(place, std::string::npos);
    changed[place + 9] = 'K';
    EXPECT_EQ(unpackState(changed), std::nullopt);
}

}  // namespace
