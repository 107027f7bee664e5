#include <gtest/gtest.h>

#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// The effect Orvalo and effects from Debian packages.
LV2World& installedWorld() {
    static auto* world = new LV2World({{"/usr/lib/lv2", ORVALO_STAGED_EFFECTS}, "/none", {}});
    return *world;
}

struct Installed {
    std::string name;
    std::string uri;
};

void PrintTo(const Installed& effect, std::ostream* stream) {
    *stream << effect.uri;
}

class InstalledEffectsTest : public ::testing::TestWithParam<Installed> {};

TEST_P(InstalledEffectsTest, RenderTheSameAsInTheHost) {
    constexpr std::size_t kFrames = 24000;
    const std::vector<std::uint32_t> blocks{64, 512, 4096, 100, 64};
    const auto bridged = makeBridged(installedWorld(), GetParam().uri);
    const auto local = std::make_shared<LV2LocalAudioUnit>(installedWorld(), GetParam().uri,
                                                           AudioComponentDescription{});
    std::vector<SentEvent> bridgedEvents;
    std::vector<SentEvent> localEvents;
    collectEvents(*bridged, bridgedEvents);
    collectEvents(*local, localEvents);
    const auto presets = local->factoryPresets();
    for (const double rate : {48000.0, 44100.0}) {
        bridged->allocateRenderResources(rate);
        local->allocateRenderResources(rate);
        if (!presets.empty()) {
            bridged->setCurrentPreset(presets.back());
            local->setCurrentPreset(presets.back());
            EXPECT_EQ(bridged->currentPreset(), local->currentPreset());
        }
        const auto input = noise(local->inputChannelCount(), kFrames);
        const auto expected = renderBlocks(*local, input, blocks, kFrames);
        const auto rendered = renderBlocks(*bridged, input, blocks, kFrames);
        for (std::size_t channel = 0; channel < expected.size(); ++channel) {
            ASSERT_EQ(rendered.at(channel), expected[channel]) << "channel " << channel;
        }
        EXPECT_EQ(bridged->latency(), local->latency());
        EXPECT_EQ(bridgedEvents, localEvents);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Debian, InstalledEffectsTest,
    ::testing::Values(Installed{"Orvalo", "urn:tessaly:orvalo"},
                      Installed{"Amp", "http://lv2plug.in/plugins/eg-amp"},
                      Installed{"Equaliser", "http://gareus.org/oss/lv2/fil4#stereo"},
                      Installed{"Delay", "http://gareus.org/oss/lv2/nodelay"},
                      Installed{"Mixer", "http://gareus.org/oss/lv2/matrixmixer#i8o8"},
                      Installed{"Onsets", "http://gareus.org/oss/lv2/onsettrigger#bassdrum_stereo"},
                      Installed{"Notes", "http://gareus.org/oss/lv2/midigen"},
                      Installed{"Compressor", "urn:zamaudio:ZamCompX2"},
                      Installed{"Reverb", "https://github.com/michaelwillis/dragonfly-reverb"}),
    [](const auto& effect) { return effect.param.name; });

}  // namespace
