#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"

namespace orvalo::testing {

namespace {

class EffectInterfaceTest : public ApplicationFixture {
  protected:
    /// How many pixels of the window's stage differ between two moments.
    static int difference(const Screenshot& one, const Screenshot& other) {
        const auto where = place();
        int result = 0;
        for (int y = where.y; y < where.y + where.height - kBar; ++y) {
            for (int x = where.x; x < where.x + where.width; ++x) {
                result += one.at(x, y) == other.at(x, y) ? 0 : 1;
            }
        }
        return result;
    }
    /// Whether the stage shows mostly the effect's dark colours.
    static bool showsEffect() {
        const auto where = place();
        const Screenshot now;
        int dark = 0;
        for (int y = where.y; y < where.y + where.height - kBar; ++y) {
            for (int x = where.x; x < where.x + where.width; ++x) {
                const auto color = now.at(x, y);
                dark += (color >> 16U) < 0x50 && ((color >> 8U) & 0xFFU) < 0x50 ? 1 : 0;
            }
        }
        return dark > where.width * (where.height - kBar) / 2;
    }

    static constexpr int kBar = 80;  // At least the height of the row of buttons.
};

TEST_F(EffectInterfaceTest, IsHiddenUntilTheUnitButtonIsPressed) {
    start();
    EXPECT_FALSE(showsEffect());
    ASSERT_TRUE(tree.press("Effect"));
    EXPECT_TRUE(eventually(showsEffect));
    ASSERT_TRUE(tree.press("Effect"));
    EXPECT_TRUE(eventually([] { return !showsEffect(); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(EffectInterfaceTest, FollowsTheWindowsExtent) {
    start();
    key("ctrl+e");
    ASSERT_TRUE(eventually(showsEffect));
    for (const auto& [width, height] : {std::pair{640, 560}, {1100, 800}, {700, 900}}) {
        act({"search", "--onlyvisible", "--name", "^Orvalo$", "windowsize", "--sync",
             std::to_string(width), std::to_string(height)});
        EXPECT_TRUE(eventually([] {
            // At 4:3 in the middle: its dark ground reaches the nearer edges of the stage.
            const auto where = place();
            const Screenshot now;
            const int stageHeight = where.height - 68;
            const int wide = std::min(where.width, stageHeight * 4 / 3);
            const int x = where.x + (where.width - wide) / 2;
            const int y = where.y + (stageHeight - wide * 3 / 4) / 2;
            const auto isDark = [&now](int column, int row) {
                return (now.at(column, row) & 0xFFU) < 0x50;
            };
            return isDark(x + 4, y + 4) && isDark(x + wide - 5, y + 4) &&
                   isDark(x + 4, y + wide * 3 / 4 - 5);
        })) << width;
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(EffectInterfaceTest, TheSpaceBarPlaysAlsoWhileTheEffectIsShown) {
    start();
    key("ctrl+e");
    ASSERT_TRUE(eventually(showsEffect));
    const auto where = place();
    act({"mousemove", std::to_string(where.x + where.width / 2),
         std::to_string(where.y + where.height / 3)});
    key("space");
    EXPECT_EQ(program->readUntil("AUEnginePlayer: Audio engine starting.").back(),
              "AUEnginePlayer: Audio engine starting.");
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
