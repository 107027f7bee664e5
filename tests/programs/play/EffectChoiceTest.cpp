#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/programs/play/PlayFixture.h"
#include "tests/testing/FileBytes.h"

// --effect, --preset, --set and --list --all.

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr auto kAmplifier = "http://lv2plug.in/plugins/eg-amp";
constexpr auto kRouter = "http://gareus.org/oss/lv2/stereoroute";

class EffectChoiceTest : public PlayFixture {
  protected:
    EffectChoiceTest() {
        environment["LV2_PATH"] = "/usr/lib/lv2";
        environment["TMPDIR"] = temporary();
        std::filesystem::create_directories(temporary());
    }

    std::string temporary() const { return (folder.path() / "tmp").string(); }

    /// Renders noise with these options and returns the samples of the file.
    std::vector<float> rendered(std::vector<std::string> options, std::uint32_t channels = 2) {
        const auto out = (folder.path() / "out.wav").string();
        options.insert(options.end(),
                       {"--file", wav("noise.wav", 48000, kFrames, channels), "--render", out});
        const auto end = run(options);
        EXPECT_EQ(end.status, 0) << end.error;
        EXPECT_TRUE(std::filesystem::is_empty(temporary()));
        const auto bytes = bytesOf(out);
        std::vector<float> samples(2 * kFrames);
        // The samples are the end of the file.
        const auto size = samples.size() * sizeof(float);
        EXPECT_GT(bytes.size(), size);
        std::memcpy(samples.data(), bytes.data() + bytes.size() - size, size);
        return samples;
    }

    /// The noise of rendered() as frames of two channels.
    static std::vector<float> input() {
        const auto signal = noise(2, kFrames, 1);
        std::vector<float> samples;
        for (std::size_t frame = 0; frame < kFrames; ++frame) {
            samples.push_back(signal[0][frame]);
            samples.push_back(signal[1][frame]);
        }
        return samples;
    }

    /// The run ends with status 2, and this is the last line on standard error.
    void expectRefusal(const std::vector<std::string>& options, const std::string& line) {
        const auto end = run(options);
        EXPECT_EQ(end.status, 2);
        EXPECT_THAT(end.output, IsEmpty());
        EXPECT_THAT(end.error, EndsWith("orvalo-play: " + line + "\n"));
    }

    static constexpr std::size_t kFrames = 4800;
};

TEST_F(EffectChoiceTest, AnInstalledEffectPlaysWithItsControlsSet) {
    const std::vector<std::string> set{"--effect", kRouter, "--set"};
    auto swapped = input();
    for (std::size_t at = 0; at < swapped.size(); at += 2) {
        std::swap(swapped[at], swapped[at + 1]);
    }
    for (const auto* value :
         {"Swap Channels: L->R, R->L", "swap channels: l->r, r->l", "5", " 5.0 "}) {
        auto options = set;
        options.push_back(std::string("routing=") + value);
        EXPECT_EQ(rendered(options), swapped) << value;
    }
}

TEST_F(EffectChoiceTest, ABundleOutsideTheSearchPathReachesTheEffectsService) {
    environment["LV2_PATH"] = "/nowhere";
    const auto bundle = folder.path() / "an #effect.lv2";
    std::filesystem::copy("/usr/lib/lv2/eg-amp.lv2", bundle);
    const auto out = (folder.path() / "out.wav").string();
    for (const auto& path : {bundle.string(), bundle.string() + "/"}) {
        const auto end = run({"--effect", path, "--set", "gain=-90", "--file",
                              wav("noise.wav", 48000, kFrames), "--render", out});
        EXPECT_EQ(end.status, 0);
        EXPECT_THAT(end.error, HasSubstr("The effect <" + std::string(kAmplifier) +
                                         "> is loaded from " + bundle.string() + "."));
    }
    // The amplifier's factor at -90 dB is 0.
    const auto samples = rendered({"--effect", bundle.string(), "--set", "gain=-90"});
    EXPECT_EQ(samples, std::vector<float>(samples.size(), 0.0F));
}

TEST_F(EffectChoiceTest, ValuesHaveUnits) {
    const auto slow = rendered({"--set", "attack=200", "--set", "threshold=-40"});
    EXPECT_NE(slow, rendered({"--set", "threshold=-40"}));
    for (const auto* attack : {"200 ms", "0.2s", "200MS"}) {
        EXPECT_EQ(rendered({"--set", std::string("attack=") + attack, "--set", "threshold=-40dB",
                            "--set", "ratio=4:1"}),
                  slow);
    }
    EXPECT_EQ(rendered({"--set", "mix=0.5 %"}), rendered({"--set", "mix=0.5"}));
    EXPECT_EQ(rendered({"--set", "enabled=off"}), input());
}

TEST_F(EffectChoiceTest, APresetIsLoadedBeforeTheControlsAreSet) {
    const auto preset = rendered({"--preset", "Squashed Radio"});
    EXPECT_NE(preset, rendered({}));
    EXPECT_EQ(rendered({"--preset", "urn:tessaly:orvalo:preset:squashed_radio"}), preset);
    EXPECT_NE(rendered({"--preset", "Squashed Radio", "--set", "makeup=0"}), preset);
    EXPECT_NE(rendered({"--preset", "Squashed Radio", "--set", "makeup=0"}),
              rendered({"--set", "makeup=0"}));
    EXPECT_EQ(rendered({"--preset", "Squashed Radio", "--set", "enabled=off"}), input());
}

TEST_F(EffectChoiceTest, ItPlaysLikeARegisteredEffect) {
    const auto music = wav("music.wav", 48000, kFrames);
    const auto end =
        run({"--effect", kAmplifier, "--set", "gain=0", "--file", music, "--passes", "1"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output, Contains("AUExtensionManager: Audio unit was found, making "
                                     "connections now ..."));
    EXPECT_EQ(end.output.back(), "AUEnginePlayer: Audio engine stopping.");
    EXPECT_THAT(end.error, HasSubstr("The effect <" + std::string(kAmplifier) +
                                     "> is loaded from /usr/lib/lv2/eg-amp.lv2."));
    EXPECT_TRUE(std::filesystem::is_empty(temporary()));
}

TEST_F(EffectChoiceTest, WhatIsUnknownIsAnsweredWithTheNearest) {
    expectRefusal({"--set", "treshold=-20"},
                  "--set: the effect has no control 'treshold'; the nearest is 'threshold'.");
    // An output.
    expectRefusal({"--effect", kAmplifier, "--set", "out=1"},
                  "--set: the effect has no control 'out'; the nearest is 'gain'.");
    expectRefusal({"--preset", "voice"},
                  "--preset: the effect has no preset 'voice'; the nearest is 'Voice Forward'.");
    expectRefusal({"--effect", kAmplifier, "--preset", "Loud"},
                  "--preset: the effect has no preset 'Loud'.");
    expectRefusal(
        {"--effect", "http://lv2plug.in/plugins/eg-am"},
        "--effect: 'http://lv2plug.in/plugins/eg-am' is neither an installed effect nor a "
        "folder; the nearest is 'http://lv2plug.in/plugins/eg-amp'.");
}

TEST_F(EffectChoiceTest, AValueThatIsNotPossibleIsRefusedWithWhatIs) {
    expectRefusal({"--set", "attack"}, "--set wants SYMBOL=VALUE, not 'attack'.");
    expectRefusal({"--set", "attack=fast"},
                  "--set: attack wants a number from 0.1 to 200 (ms), not 'fast'.");
    expectRefusal({"--set", "attack=1 s"},
                  "--set: attack wants a number from 0.1 to 200 (ms), not '1 s'.");
    expectRefusal({"--set", "attack=5 dB"},
                  "--set: attack wants a number from 0.1 to 200 (ms), not '5 dB'.");
    expectRefusal({"--set", "enabled=2"}, "--set: enabled wants on or off, not '2'.");
    expectRefusal({"--set", "trigger_note=60.5"},
                  "--set: trigger_note wants a whole number from 0 to 127, not '60.5'.");
    expectRefusal(
        {"--effect", kRouter, "--set", "routing=9"},
        "--set: routing wants one of Downmix to Mono -3dB (Equal Power), Downmix to Mono -6dB "
        "(Equal Amplitude), Downmix to Mono -0dB (Sum Channels), Route Left Only: L->L, L->R, "
        "Route Right Only: R->R, R->L, Swap Channels: L->R, R->L, No-OP: L->L, R->R (Straight "
        "Bypass), M/S: (L+R)/2, (L-R)/2 (to Mid/Side), M/S: (L+R), (L-R) (from Mid/Side), not "
        "'9'.");
}

TEST_F(EffectChoiceTest, ABundleWithoutOneEffectIsRefused) {
    expectRefusal({"--effect", temporary()},
                  "--effect: " + temporary() + " is no bundle with an effect.");
    const auto two = folder.path() / "two.lv2";
    std::filesystem::create_directories(two);
    std::ofstream(two / "manifest.ttl")
        << "<urn:test:a> a <http://lv2plug.in/ns/lv2core#Plugin> .\n"
           "<urn:test:b> a <http://lv2plug.in/ns/lv2core#Plugin> .\n";
    expectRefusal({"--effect", two.string()},
                  "--effect: " + two.string() +
                      " has 2 effects; name one, with the folder around it in LV2_PATH: "
                      "urn:test:a, urn:test:b.");
    environment["LV2_PATH"] = folder.path().string();
    expectRefusal({"--effect", "urn:test:a"},
                  "The plug-in <urn:test:a> cannot be used: its data name no library.");
}

TEST_F(EffectChoiceTest, TheListOfAllHasEveryInstalledEffect) {
    environment["LV2_PATH"] = "/usr/lib/lv2:" + folder.path().string();
    const auto bundle = folder.path() / "bad.lv2";
    std::filesystem::create_directories(bundle);
    std::ofstream(bundle / "manifest.ttl")
        << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
           "<urn:test:bad> a lv2:Plugin ; lv2:binary <bad.so> ; lv2:requiredFeature <urn:x> ;\n"
           "  <http://usefulinc.com/ns/doap#name> \"Bad\" .\n";
    const auto end = run({"--list", "--all"});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.error, "");
    ASSERT_FALSE(end.output.empty());
    EXPECT_THAT(end.output.front(), StartsWith("in  out  name  "));
    const auto row = [&](const std::string& uri) {
        const auto found = std::ranges::find_if(
            end.output, [&](const std::string& line) { return line.ends_with("  " + uri); });
        return found == end.output.end() ? std::string("none") : *found;
    };
    EXPECT_THAT(row(kAmplifier), StartsWith("1   1    Simple Amplifier  "));
    EXPECT_THAT(row(kRouter), StartsWith("2   2    "));
    EXPECT_THAT(row("urn:tessaly:orvalo"), StartsWith("2   2    Orvalo  "));
    EXPECT_THAT(row("urn:test:bad"), StartsWith("-   -    Bad  "));
}

}  // namespace

}  // namespace orvalo::testing
