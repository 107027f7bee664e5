#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/programs/effect-service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;

constexpr const char* kOrvalo = "urn:tessaly:orvalo";
constexpr std::size_t kFrames = 20000;
const std::vector<std::uint32_t> kLengths{64, 1, 256, 4096, 1023};

/// The same effect in this process.
struct Reference {
    Reference(const std::string& folder, const std::string& uri)
        : world({{folder}, folder + "/none"}),
          unit(std::make_shared<LV2LocalAudioUnit>(world, uri, AudioComponentDescription{})) {
        collectEvents(*unit, events);
    }

    LV2World world;
    std::shared_ptr<LV2LocalAudioUnit> unit;
    std::vector<SentEvent> events;
};

class ServiceRendering : public ::testing::TestWithParam<std::pair<const char*, const char*>> {
  protected:
    const std::string folder_ = GetParam().first;
    const std::string uri_ = GetParam().second;
    HostedEffect effect_{folder_, uri_};
    Reference reference_{folder_, uri_};
    const Channels input_ = noise(effect_.data().inputChannelCount, kFrames);
};

TEST_P(ServiceRendering, IsBitIdenticalToRenderingInThisProcess) {
    effect_.mustInstantiate();
    EXPECT_EQ(effect_.render(input_, kLengths, kFrames),
              renderBlocks(*reference_.unit, input_, kLengths, kFrames));
    EXPECT_EQ(effect_.events, reference_.events);
    EXPECT_EQ(effect_.audio().control().latencies[0].load(), reference_.unit->latency());
}

TEST_P(ServiceRendering, RendersLongQuantaInSpansThatTheEffectBears) {
    constexpr std::size_t kLong = 90000;
    constexpr std::uint32_t kSpan = kMaximumFramesToRender;
    const auto input = noise(effect_.data().inputChannelCount, kLong);
    for (const auto& port : effect_.data().ports) {
        if (port.symbol == "chatter") {
            effect_.request.controls.push_back({port.index, 1.0F});
            reference_.unit->controls().setValue(port.index, 1.0F);
        }
    }
    effect_.mustInstantiate();
    EXPECT_EQ(effect_.render(input, {kMaximumOfflineFrames, kSpan + 904, 2 * kSpan}, kLong),
              renderBlocks(*reference_.unit, input,
                           {kSpan, kSpan, kSpan, kSpan, kSpan, kSpan, kSpan, kSpan,  //
                            kSpan, 904, kSpan, kSpan},
                           kLong));
    EXPECT_EQ(effect_.events, reference_.events);
}

TEST_P(ServiceRendering, IsBitIdenticalAtAnotherRateAndAfterPresets) {
    effect_.mustInstantiate();
    effect_.service.send(bridge::Prepare{1, 44100.0});
    EXPECT_EQ(effect_.service.answer(1), "");
    reference_.unit->allocateRenderResources(44100.0);
    EXPECT_EQ(effect_.render(input_, kLengths, kFrames),
              renderBlocks(*reference_.unit, input_, kLengths, kFrames));
    std::uint32_t number = 2;
    for (const auto& preset : findPresets(reference_.world, uri_)) {
        effect_.service.send(bridge::LoadPreset{number, preset.uri});
        EXPECT_EQ(effect_.service.answer(number), "");
        reference_.unit->setCurrentPreset(
            std::make_shared<AUAudioUnitPreset>(number - 2, preset.label));
        ++number;
        ASSERT_EQ(effect_.render(input_, kLengths, kFrames),
                  renderBlocks(*reference_.unit, input_, kLengths, kFrames))
            << preset.label;
    }
    EXPECT_EQ(effect_.events, reference_.events);
}

INSTANTIATE_TEST_SUITE_P(Effects, ServiceRendering,
                         ::testing::Values(std::pair(ORVALO_ZOO, "urn:orvalo:zoo:probe"),
                                           std::pair(ORVALO_ZOO, "urn:orvalo:zoo:echo"),
                                           std::pair(ORVALO_STAGE "/lib/lv2", kOrvalo)));

TEST(ServiceProbe, SendsMIDIWithFrameAndCable) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    for (const auto& port : effect.data().ports) {
        if (port.symbol == "chatter") {
            effect.request.controls.push_back({port.index, 1.0F});
        }
    }
    effect.mustInstantiate();
    effect.render({std::vector<float>(200)}, {100}, 200);
    const auto note = [](std::int64_t time, int cable) {
        return SentEvent{time, cable, {0x90, 60 + cable, 100}, 3};
    };
    EXPECT_EQ(effect.events, (std::vector<SentEvent>{note(0, 0), note(50, 1), note(99, 0),
                                                     note(100, 0), note(150, 1), note(199, 0)}));
}

TEST(ServiceProbe, PublishesControlValues) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.request.sampleRate = 96000.0;
    effect.mustInstantiate();
    EXPECT_EQ(effect.control("gain"), 0.5F);
    EXPECT_EQ(effect.control("corner"), 24000.0F);
    effect.renderQuantum(16);
    EXPECT_EQ(effect.control("latency"), 64.0F);
    EXPECT_EQ(effect.audio().control().latencies[0].load(), 64U);
    effect.service.send(bridge::LoadPreset{1, "urn:orvalo:zoo:probe#loud"});
    EXPECT_EQ(effect.service.answer(1), "");
    EXPECT_EQ(effect.control("gain"), 2.0F);
}

TEST(ServiceProbe, StartsWithTheRequestedControlValues) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.request.controls = {{2, 0.25F}, {4000000000U, 1.0F}};
    effect.mustInstantiate();
    EXPECT_EQ(effect.control("gain"), 0.25F);
    EXPECT_EQ(effect.render({{1.0F}}, {1}, 1)[0][0], 0.25F);
}

TEST(ServiceProbe, ClampsTheFrameCountToTheMemory) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.renderQuantum(4000000000U);
    EXPECT_EQ(effect.control("latency"), 64.0F);
}

TEST(ServiceProbe, AnswersPingsWhileItRenders) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    for (std::uint32_t number = 1; number < 100; ++number) {
        effect.service.send(bridge::Ping{number});
        effect.renderQuantum(256);
        ASSERT_EQ(effect.service.answer(number), "");
    }
}

TEST(ServiceErrors, AreTheTextOfTheAnswer) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.service.send(bridge::LoadPreset{1, "urn:orvalo:zoo:probe#nobody"});
    EXPECT_EQ(effect.service.answer(1),
              "The plug-in <urn:orvalo:zoo:probe> cannot be used: its preset "
              "<urn:orvalo:zoo:probe#nobody> cannot be loaded.");
    effect.service.send(bridge::Prepare{2, -1.0});
    EXPECT_THAT(effect.service.answer(2), HasSubstr("a sample rate of -1"));
    EXPECT_EQ(effect.render({{1.0F}}, {1}, 1)[0][0], 0.5F);
}

TEST(ServiceErrors, NameTheReasonOfAFailedInstantiation) {
    HostedEffect refusing(ORVALO_ZOO, "urn:orvalo:zoo:failing");
    EXPECT_EQ(
        refusing.instantiate(),
        "The plug-in <urn:orvalo:zoo:failing> cannot be used: it refuses to be instantiated.");
    HostedEffect unknown(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    unknown.request.bundles.clear();
    EXPECT_EQ(unknown.instantiate(),
              "The plug-in <urn:orvalo:zoo:probe> cannot be used: it is not installed.");
    HostedEffect larger(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    larger.request.portCount = 4096;
    EXPECT_EQ(larger.instantiate(), "The memory shared with the host has the wrong size.");
    HostedEffect swapped(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    swapped.request.inputChannelCount = 2;
    swapped.request.outputChannelCount = 0;
    EXPECT_EQ(swapped.instantiate(),
              "The plug-in <urn:orvalo:zoo:probe> cannot be used: its ports have changed since the "
              "host read them.");
}

}  // namespace
