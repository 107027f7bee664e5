#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>

#include "platform/web/WebSandbox.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/platform/web/Site.h"
#include "tests/testing/Contrast.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

constexpr double kLeast = 4.5;
constexpr auto kWelcome =
    "Press play to hear a demonstration through the effect.\n"
    "The Effect button shows the effect’s own controls here.";

constexpr auto kPlaying =
    "A demonstration plays through the effect.\n"
    "The Effect button shows the effect’s controls: turn them and listen.";

/// The parameter: the colour scheme of the desktop.
class ContrastTest : public ApplicationFixture, public ::testing::WithParamInterface<const char*> {
  protected:
    ContrastTest() {
        environment["ADW_DEBUG_COLOR_SCHEME"] = GetParam();
        environment["ADW_DISABLE_PORTAL"] = "1";
    }

    void prepareForPages() {
        // The leak check would read memory that the web engine protects, and crash.
        environment["ASAN_OPTIONS"] = "detect_leaks=0";
        if (sandboxProblem()) {
            environment["WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"] = "1";
        }
    }

    bool shows(const std::string& text) const {
        return pollUntil([&] { return std::ranges::count(tree.names(), text) > 0; });
    }

    /// The text's colour farthest from its ground, the most frequent colour of its place.
    static double contrastOf(const Screenshot& shot, const AccessibleTree::Text& text) {
        const auto window = place();
        std::map<std::uint32_t, int> counts;
        const int right = std::min(window.x + text.x + text.width, shot.width());
        const int bottom = std::min(window.y + text.y + text.height, shot.height());
        for (int y = std::max(window.y + text.y, 0); y < bottom; ++y) {
            for (int x = std::max(window.x + text.x, 0); x < right; ++x) {
                ++counts[shot.at(x, y)];
            }
        }
        if (counts.empty()) {
            return kLeast;  // It is in a list that is closed.
        }
        const auto ground =
            std::ranges::max_element(counts, {}, [](const auto& count) { return count.second; });
        double result = 0.0;
        for (const auto& [color, count] : counts) {
            result = std::max(result, contrast(color, ground->first));
        }
        return result;
    }

    /// Each text of the window, once what moves has come to rest. covered: texts under the stage of
    /// the effect. A text that is there twice counts once.
    void expectLegible(const std::string& what, const std::vector<std::string>& expected,
                       const std::vector<std::string>& covered = {}) {
        for (const auto& text : expected) {
            EXPECT_TRUE(shows(text)) << what;
        }
        focus();
        std::map<std::string, double> contrasts;
        EXPECT_TRUE(pollUntil([&] {
            const auto texts = tree.texts();
            const Screenshot shot;
            contrasts.clear();
            for (const auto& text : texts) {
                if (!text.text.empty() && std::ranges::count(covered, text.text) == 0) {
                    auto& found = contrasts[text.text];
                    found = std::max(found, contrastOf(shot, text));
                }
            }
            return !contrasts.empty() && std::ranges::all_of(contrasts, [](const auto& text) {
                return text.second >= kLeast;
            });
        })) << what
            << ": " << ::testing::PrintToString(contrasts);
    }
};

INSTANTIATE_TEST_SUITE_P(Schemes, ContrastTest, ::testing::Values("prefer-light", "prefer-dark"),
                         [](const auto& scheme) {
                             return std::string(scheme.param) == "prefer-light" ? "light" : "dark";
                         });

TEST_P(ContrastTest, TheMainScreen) {
    start();
    expectLegible("at first", {"Orvalo", "Effect", kWelcome});
    const auto textCount = tree.texts().size();
    key("space");
    // The title of the demonstration is one text more.
    EXPECT_TRUE(pollUntil([&] { return tree.texts().size() == textCount + 1; }));
    expectLegible("playing", {kPlaying});
    EXPECT_EQ(quit(), 0);
}

TEST_P(ContrastTest, TheNoticeThatThereIsNoSound) {
    const auto configuration = folder.path() / "asound.conf";
    std::ofstream(configuration) << "defaults.pcm.card 0\n";
    environment["ORVALO_AUDIO_OUTPUT"] = "auto";
    environment["JACK_NO_START_SERVER"] = "1";
    environment["JACK_DEFAULT_SERVER"] = "orvalo-contrast-test";
    environment["PULSE_SERVER"] = "unix:" + (folder.path() / "nothing").string();
    environment["ALSA_CONFIG_PATH"] = configuration;
    start();
    key("space");
    const std::string notice =
        "No sound device: playing silently. Connect one, or start a sound server; it is used at "
        "once.";
    expectLegible("welcome", {notice});
    key("ctrl+e");
    EXPECT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
    expectLegible("above the effect’s UI", {notice}, {"Orvalo", kPlaying});
    EXPECT_EQ(quit(), 0);
}

TEST_P(ContrastTest, AUIMadeFromPorts) {
    environment["LV2_PATH"] = ORVALO_MANY_CONTROLS "/few";
    start();
    resize(1000, 900);
    key("ctrl+e");
    expectLegible("ports", {"Level", "-20.0 dB", "Square", "Meters", "Meter"},
                  {"Orvalo", kWelcome});
    EXPECT_EQ(quit(), 0);
}

TEST_P(ContrastTest, APageThatDoesNotCome) {
    const Site silent{{{"/DYNAMICS/", {.manner = Page::Manner::never}}}};
    environment["ORVALO_TEST_SITE"] = silent.address("");
    prepareForPages();
    start();
    key("F1");
    expectLegible("loading", {"Loading the page…", "Back", "Show the Installed Page"});
    key("Escape");
    EXPECT_EQ(quit(), 0);
}

TEST_P(ContrastTest, TheNoteOnAnInstalledPage) {
    prepareForPages();
    start();
    key("ctrl+i");
    // The strip above the page. Assistive technology does not tell its place.
    constexpr int kTop = 52;  // The height of the bar with "Back".
    constexpr int kHeight = 24;
    EXPECT_TRUE(pollUntil([] {
        return contrastOf(Screenshot(), {"", 0, kTop, place().width, kHeight}) >= kLeast;
    }));
    key("Escape");
    EXPECT_EQ(quit(), 0);
}

TEST_P(ContrastTest, TheTextsOfAStageWithoutAnEffect) {
    installWithoutEffect();
    program = startAgain();
    EXPECT_EQ(lineWith("ERROR:"), "ERROR: There were no audio units found.");
    expectLegible("welcome", {"Try Again"});
    key("ctrl+e");
    expectLegible("stage", {"Try Again"}, {"Orvalo"});
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
