#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <utility>

#include "effect/ui/model/Layout.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

class EffectPluginUITest : public ApplicationFixture {
  protected:
    /// Whether the UI has its place: at 4:3, centred, as large as the stage above the row of
    /// buttons allows.
    static bool isPlaced() {
        const auto window = place();
        const auto effect = effectPlace();
        return effect && std::abs(effect->width * 3 - effect->height * 4) <= 4 &&
               std::abs((effect->x - window.x) * 2 + effect->width - window.width) <= 2 &&
               effect->y + effect->height <= window.y + window.height - kRow &&
               (effect->width == window.width || effect->height >= window.height - kRow - 1);
    }

    /// Whether the UI has its place and has drawn its curve, in the upper left.
    static bool showsEffect() {
        if (!isPlaced()) {
            return false;
        }
        const auto effect = effectPlace().value_or(ApplicationPlace{});
        const Screenshot now;
        int curve = 0;
        for (int y = effect.y + effect.height / 12; y < effect.y + effect.height / 2; ++y) {
            for (int x = effect.x; x < effect.x + effect.width / 3; ++x) {
                const auto color = now.at(x, y);
                curve += (color >> 16U) < 0x80 && ((color >> 8U) & 0xFFU) > 0xB0 ? 1 : 0;
            }
        }
        return curve > effect.width / 4;
    }

    /// The middle of a part of the effect's layout.
    static EffectSpot spotOf(effect::ui::Rect effect::ui::Layout::*part) {
        const auto place = effectPlace();
        EXPECT_TRUE(place);
        if (!place) {
            return {};
        }
        const auto area = effect::ui::Layout::of(place->width, place->height, 1.0).*part;
        return {area.centerX() / place->width, area.centerY() / place->height};
    }

    void showEffect() {
        start();
        key("ctrl+e");
        ASSERT_TRUE(pollUntil(showsEffect));
    }

    static constexpr int kRow = 68;  // The height of the row of buttons.
};

TEST_F(EffectPluginUITest, IsHiddenUntilTheEffectButtonIsPressed) {
    start();
    EXPECT_FALSE(showsEffect());
    ASSERT_TRUE(tree.press("Effect"));
    EXPECT_TRUE(pollUntil(showsEffect));
    ASSERT_TRUE(tree.press("Effect"));
    EXPECT_TRUE(pollUntil([] { return !showsEffect(); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(EffectPluginUITest, FollowsTheWindowsSize) {
    start();
    key("ctrl+e");
    ASSERT_TRUE(pollUntil(showsEffect));
    // Growing and shrinking: a layout must not depend on the previous one.
    for (const auto& [width, height] : {std::pair{640, 560},
                                        {1100, 800},
                                        {700, 900},
                                        {1200, 500},
                                        {420, 400},
                                        {1200, 900},
                                        {960, 788}}) {
        resize(width, height);
        EXPECT_TRUE(pollUntil([wanted = std::pair(width, height)] {
            const auto window = place();
            return std::pair(window.width, window.height) == wanted && isPlaced();
        })) << width;
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(EffectPluginUITest, SpacePlaysWhileTheEffectIsShown) {
    showEffect();
    pointAt({0.5, 0.3});
    key("space");
    EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
              "AUEnginePlayer: Audio engine starting.");
    EXPECT_EQ(quit(), 0);
}

TEST_F(EffectPluginUITest, ShortcutsWorkAfterAClickIntoTheEffect) {
    showEffect();
    for (const auto& spot : {kThreshold, kPower, EffectSpot{0.5, 0.3}}) {
        pointAt(spot);
        act({"click", "1"});
        playAndStop();
    }
    key("ctrl+e");
    EXPECT_TRUE(pollUntil([] { return !effectPlace(); }));
    key("ctrl+e");
    // One of the clicks has bypassed it.
    ASSERT_TRUE(pollUntil(isPlaced));
    act({"click", "1"});
    key("ctrl+q");
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(EffectPluginUITest, TypingIntoTheEffectDoesNotTriggerShortcuts) {
    showEffect();
    clickIntoField(kThresholdsValue);
    act({"type", "--", "- 12 dB "});
    // After the typed text, a key that the effect does not use.
    key("ctrl+e");
    ASSERT_TRUE(pollUntil([] { return !effectPlace(); }));
    EXPECT_TRUE(tree.shows("Play"));
    EXPECT_FALSE(tree.shows("Stop"));
    EXPECT_EQ(quit(), 0);
    const auto lines = program->readAll();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "AUEnginePlayer: Audio engine starting."), 0);
}

/// The host writes and removes what the effect, which sees `~/.lv2` read-only, asks for.
TEST_F(EffectPluginUITest, PresetsAreSavedAndDeletedAlsoAfterARestart) {
    const auto home = folder.path() / "home";
    environment["HOME"] = home;
    const auto presets = home / ".lv2";
    const auto preset = presets / "orvalo-My_sound.preset.lv2";
    showEffect();
    clickIntoField(spotOf(&effect::ui::Layout::savePreset));
    act({"type", "--", "My sound"});
    act({"key", "Return"});
    EXPECT_TRUE(pollUntil([&] { return std::filesystem::exists(preset / "manifest.ttl"); }));
    EXPECT_EQ(quit(), 0);
    showEffect();
    clickIntoField(spotOf(&effect::ui::Layout::presetName));
    act({"key", "End"});
    act({"key", "Delete"});
    EXPECT_TRUE(pollUntil([&] { return !std::filesystem::exists(preset); }));
    // A change within the folder would be a file that the effect wrote itself.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(presets), {}), 0);
    act({"key", "ctrl+z"});
    EXPECT_TRUE(pollUntil([&] { return std::filesystem::exists(preset / "manifest.ttl"); }));
    act({"key", "Escape"});
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->standardError().find("refused"), std::string::npos);
}

}  // namespace

}  // namespace orvalo::testing
