#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/WaitUntil.h"

// What people get who do not see the window, or see it badly.

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::IsSupersetOf;

class ReaderTest : public ApplicationFixture {
  protected:
    void startAndShow() {
        start();
        key("ctrl+e");
        ASSERT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
        ASSERT_TRUE(pollUntil([this] { return tree.value("Threshold").has_value(); }));
    }
    std::string saved() const {
        std::ifstream file(folder.path() / "state/orvalo/effect.ini");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// The picture around the knob of the threshold.
    static std::vector<std::uint32_t> knob() {
        const auto effect = effectPlace().value_or(ApplicationPlace{});
        const Screenshot shot;
        std::vector<std::uint32_t> pixels;
        const int reach = effect.width / 32;
        const int x = effect.x + static_cast<int>(kThreshold.x * effect.width);
        const int y = effect.y + static_cast<int>(kThreshold.y * effect.height);
        for (int row = y - reach; row < y + reach; ++row) {
            for (int column = x - reach; column < x + reach; ++column) {
                pixels.push_back(shot.at(column, row));
            }
        }
        return pixels;
    }
};

TEST_F(ReaderTest, ControlsOfTheEffectsUIHaveNamesAndValues) {
    startAndShow();
    EXPECT_THAT(tree.names(), IsSupersetOf({"Plug-in UI", "Controls of Orvalo", "Threshold",
                                            "Ratio", "Attack", "Release", "Mix"}));
    EXPECT_EQ(tree.value("Threshold"), -18.0);
    EXPECT_EQ(tree.value("Ratio"), 4.0);
    EXPECT_EQ(quit(), 0);
}

TEST_F(ReaderTest, AValueThatIsSetReachesTheUIAndTheEffect) {
    startAndShow();
    const auto before = knob();
    ASSERT_TRUE(tree.setValue("Threshold", -42.5));
    EXPECT_TRUE(pollUntil([&before] { return knob() != before; }));
    EXPECT_EQ(tree.value("Threshold"), -42.5);
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(saved(), HasSubstr("\nthreshold=-42.5\n"));
}

TEST_F(ReaderTest, AValueThatTheUISetsCanBeRead) {
    startAndShow();
    pointAt(kThreshold);
    act({"click", "4"});
    EXPECT_TRUE(pollUntil([this] { return tree.value("Threshold") > -18.0; }));
    focus();
    EXPECT_EQ(quit(), 0);
}

TEST_F(ReaderTest, NamesOfPortsStayOnOneLineInANarrowWindow) {
    environment["LV2_PATH"] = ORVALO_MANY_CONTROLS "/few";
    start();
    resize(420, 400);
    key("ctrl+e");
    const auto place = [this](const std::string& text) {
        const auto texts = tree.texts();
        const auto found = std::ranges::find(texts, text, &AccessibleTree::Text::text);
        return found == texts.end() ? AccessibleTree::Text{} : *found;
    };
    // The short name "Level" shows the height of one line.
    EXPECT_TRUE(pollUntil([&] {
        const auto level = place("Level");
        const auto cutoff = place("Cutoff");
        return level.height > 0 && cutoff.height == level.height && cutoff.width > level.width;
    }));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
