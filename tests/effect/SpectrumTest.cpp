// The detector's spectrum, from the request of the UI to the events of the effect.

#include <gtest/gtest.h>

#include <cstring>

#include "effect/DetectorEvents.h"
#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::bandLevelsUri;
using orvalo::effect::DetectorSpectrum;
using orvalo::effect::detectorSpectrumUri;
using orvalo::effect::SpectrumBank;
using orvalo::effect::watchDetectorUri;

constexpr std::uint32_t block = 480;

class SpectrumTest : public ::testing::Test {
  protected:
    /// Runs blocks of a signal, the request before the first of them, and returns the spectra.
    std::vector<SpectrumBank::Levels> run(EffectHost& host, const Stereo& input, bool asks) {
        std::vector<SpectrumBank::Levels> spectra;
        output = input;
        for (std::uint32_t at = 0; at + block <= input.left.size(); at += block) {
            host.midiIn().clear();
            if (asks && at == 0) {
                host.midiIn().appendObject(100, watchDetectorUri);
            }
            host.run(input.left.data() + at, input.right.data() + at, output.left.data() + at,
                     output.right.data() + at, block);
            for (const auto& object : host.midiOut().objects()) {
                DetectorSpectrum spectrum{};
                EXPECT_EQ(object.size(), sizeof spectrum);
                std::memcpy(&spectrum, object.data(), sizeof spectrum);
                EXPECT_EQ(spectrum.object.otype, host.uris()[detectorSpectrumUri]);
                EXPECT_EQ(spectrum.levels.key, host.uris()[bandLevelsUri]);
                EXPECT_EQ(spectrum.levels.value.type, host.uris()[LV2_ATOM__Vector]);
                EXPECT_EQ(spectrum.levels.value.size,
                          sizeof spectrum.vector + sizeof spectrum.values);
                EXPECT_EQ(spectrum.vector.child_type, host.uris()[LV2_ATOM__Float]);
                spectra.push_back(spectrum.values);
            }
        }
        return spectra;
    }

    Stereo output;
};

TEST_F(SpectrumTest, IsSentForTwoSecondsAfterARequest) {
    EffectHost host;
    // Plays no notes.
    host.control("ratio") = 1.0F;
    host.activate();
    const Stereo input = noiseBursts(144000);
    EXPECT_EQ(run(host, input, false).size(), 0U);
    // 100 frames are gone in the block of the request.
    EXPECT_EQ(run(host, input, true).size(), 49U);
    EXPECT_EQ(run(host, input, true).size(), 49U);
    EXPECT_EQ(host.control("midi_in_count"), 0.0F);
    EXPECT_EQ(host.control("midi_out_count"), 0.0F);
}

TEST_F(SpectrumTest, DoesNotChangeTheSound) {
    const Stereo input = noiseBursts(48000);
    EffectHost watched;
    watched.activate();
    run(watched, input, true);
    const Stereo heard = output;
    EffectHost host;
    host.activate();
    run(host, input, false);
    EXPECT_EQ(heard.left, output.left);
    EXPECT_EQ(heard.right, output.right);
}

TEST_F(SpectrumTest, IsThatOfTheFilteredDetector) {
    EffectHost host;
    const Stereo input = noiseBursts(48000);
    const auto open = run(host, input, true).back();
    host.control("sc_highpass") = 1000.0F;
    const auto filtered = run(host, input, true).back();
    // Two octaves below 1 kHz, and two above it.
    EXPECT_NEAR(filtered[11] - open[11], -24.0F, 3.0F);
    EXPECT_NEAR(filtered[23] - open[23], 0.0F, 1.0F);
}

TEST_F(SpectrumTest, LeavesTheRoomToTheNotes) {
    EffectHost host({.midiRoom = 64});
    host.activate();
    EXPECT_EQ(run(host, noiseBursts(48000), true).size(), 0U);
}

TEST_F(SpectrumTest, OtherObjectsAreNoRequest) {
    EffectHost host;
    host.activate();
    const Stereo input = noiseBursts(9600);
    output = input;
    host.midiIn().appendObject(0, "urn:example:other");
    const std::uint8_t tooShort = 0;
    host.midiIn().append(1, &tooShort, 0);
    host.run(input.left.data(), input.right.data(), output.left.data(), output.right.data(), 9600);
    EXPECT_TRUE(host.midiOut().objects().empty());
}

}  // namespace
