#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/DirectHost.h"
#include "tests/platform/audio/lv2/RegisteredEffects.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;

struct RealEffect {
    std::string uri;
    std::string subtype;
    std::uint32_t inputs;
    std::uint32_t outputs;
    double sampleRate;
    std::map<std::string, float> controls;
};

/// Third-party effects from Debian packages, of those that both Debian 12 and 13 have.
const std::vector<RealEffect>& realEffects() {
    static const std::vector<RealEffect> effects{
        // lv2-examples: mono; MIDI in; MIDI in and out.
        {"http://lv2plug.in/plugins/eg-amp", "eamp", 1, 1, 48000.0, {{"gain", -6.0F}}},
        {"http://lv2plug.in/plugins/eg-midigate", "gate", 1, 1, 48000.0, {}},
        // x42-plugins: parametric equaliser, stereo; a delay line; many ports; a convolver with a
        // worker; an onset detector with MIDI out.
        {"http://gareus.org/oss/lv2/fil4#stereo", "fil4", 2, 2, 44100.0, {}},
        {"http://gareus.org/oss/lv2/nodelay", "node", 1, 1, 48000.0, {}},
        {"http://gareus.org/oss/lv2/matrixmixer#i8o8", "matr", 8, 8, 48000.0, {}},
        {"http://gareus.org/oss/lv2/zeroconvolv#Stereo", "zero", 2, 2, 48000.0, {}},
        {"http://gareus.org/oss/lv2/onsettrigger#bassdrum_stereo", "onst", 2, 0, 48000.0, {}},
        // zam-plugins: a compressor with a side chain; dragonfly: a reverb.
        {"urn:zamaudio:ZamCompX2", "zcmp", 3, 2, 48000.0, {{"thr", -30.0F}}},
        {"https://github.com/michaelwillis/dragonfly-reverb", "hall", 2, 2, 44100.0, {}},
    };
    return effects;
}

class RealEffects : public ::testing::TestWithParam<RealEffect> {
  protected:
    static void SetUpTestSuite() {
        std::map<std::string, std::string> effects;
        for (const auto& effect : realEffects()) {
            effects.emplace(effect.subtype, effect.uri);
        }
        registerEffects(effects);
    }

    static std::shared_ptr<LV2LocalAudioUnit> make(const std::string& uri) {
        return std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), uri,
                                                   AudioComponentDescription{});
    }
};

TEST_P(RealEffects, AreRegisteredByAUsersBundle) {
    AudioComponentDescription key;
    for (const char character : GetParam().subtype) {
        key.componentSubType = key.componentSubType << 8U | static_cast<unsigned char>(character);
    }
    const auto found =
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(key);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->uri, GetParam().uri);
    EXPECT_EQ(found[0]->name, "REAL: " + GetParam().subtype);
}

TEST_P(RealEffects, RenderAsInABareHost) {
    const auto& effect = GetParam();
    constexpr std::size_t kFrames = 24000;
    const std::vector<std::uint32_t> blocks{64, 512, 4096, 100, 64};
    const auto unit = make(effect.uri);
    EXPECT_EQ(unit->inputChannelCount(), effect.inputs);
    EXPECT_EQ(unit->outputChannelCount(), effect.outputs);
    unit->allocateRenderResources(effect.sampleRate);
    for (const auto& [symbol, value] : effect.controls) {
        setControl(*unit, symbol, value);
    }
    const auto input = noise(effect.inputs, kFrames);
    const auto expected =
        renderDirectly(effect.uri, effect.sampleRate, effect.controls, input, blocks, kFrames);
    const auto rendered = renderBlocks(*unit, input, blocks, kFrames);
    ASSERT_EQ(rendered.size(), expected.size());
    for (std::size_t channel = 0; channel < rendered.size(); ++channel) {
        ASSERT_EQ(rendered[channel], expected[channel]) << "channel " << channel;
    }
}

INSTANTIATE_TEST_SUITE_P(Debian, RealEffects, ::testing::ValuesIn(realEffects()),
                         [](const auto& item) { return item.param.subtype; });

class InstalledEffects : public RealEffects {};

TEST_F(InstalledEffects, SendMIDIInTheirFirstQuanta) {
    const auto unit = make("http://gareus.org/oss/lv2/midigen");
    unit->allocateRenderResources(48000.0);
    EXPECT_THAT(unit->MIDIOutputNames(), ElementsAre("MIDI Out"));
    std::vector<SentEvent> events;
    collectEvents(*unit, events);
    renderBlocks(*unit, noise(unit->inputChannelCount(), 96000), {256}, 96000);
    ASSERT_FALSE(events.empty());
    for (std::size_t index = 1; index < events.size(); ++index) {
        EXPECT_LE(events[index - 1].sampleTime, events[index].sampleTime);
    }
    EXPECT_LT(events.back().sampleTime, 96000);
}

TEST_F(InstalledEffects, LoadTheirPresets) {
    const auto unit = make("http://gareus.org/oss/lv2/fat1#scales");
    const auto presets = unit->factoryPresets();
    ASSERT_GE(presets.size(), 2U);
    for (std::size_t index = 1; index < presets.size(); ++index) {
        EXPECT_LE(presets[index - 1]->name, presets[index]->name);
        EXPECT_EQ(presets[index]->number, static_cast<std::int64_t>(index));
    }
    unit->setCurrentPreset(presets.back());
    EXPECT_EQ(unit->currentPreset(), presets.back());
}

TEST_F(InstalledEffects, ReceiveWorkerResponses) {
    // The convolver loads a preset's impulse in the worker and plays once the worker has answered.
    const auto unit = make("http://gareus.org/oss/lv2/zeroconvolv#Mono");
    unit->allocateRenderResources(48000.0);
    const auto input = noise(1, 4096);
    const auto silence = Channels(1, std::vector<float>(4096));
    EXPECT_EQ(renderBlocks(*unit, input, {512}, 4096), silence);
    const auto presets = unit->factoryPresets();
    ASSERT_EQ(presets.size(), 1U);
    EXPECT_EQ(presets[0]->name, "No-OP Mono");
    unit->setCurrentPreset(presets[0]);
    Channels heard;
    ASSERT_TRUE(pollUntil([&] {
        heard = renderBlocks(*unit, input, {512}, 4096);
        return heard != silence;
    }));
    heard = renderBlocks(*unit, input, {512}, 4096);
    EXPECT_EQ(unit->latency(), 64U);
    for (std::size_t frame = 64; frame < 4096; ++frame) {
        ASSERT_NEAR(heard[0][frame], input[0][frame - 64], 1e-6) << frame;
    }
}

}  // namespace
